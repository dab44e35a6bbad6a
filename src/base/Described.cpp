// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "base/Described.h"

namespace quillmark {

QString describe(const std::exception_ptr &failure)
{
    try {
        std::rethrow_exception(failure);
    } catch (const Described &described) {
        return described.description();
    } catch (const std::exception &exception) {
        return QString::fromUtf8(exception.what());
    } catch (...) {
        return QStringLiteral("An unknown failure occurred.");
    }
}

} // namespace quillmark
