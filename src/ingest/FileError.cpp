// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "ingest/FileError.h"

namespace quillmark {

FileError::FileError(const QString &attempt, const std::filesystem::path &file,
                     std::error_code code)
    : std::filesystem::filesystem_error(attempt.toStdString(), file, code),
      m_description(attempt + QStringLiteral(": ") + QString::fromStdString(code.message()))
{}

} // namespace quillmark
