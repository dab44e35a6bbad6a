// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/Described.h"

#include <exception>

namespace quillmark {

/// Why a form does not become a payload.
class ManualEntryError : public std::exception, public Described
{
public:
    enum class Case {
        missingRequiredFields,
    };

    Case which() const { return Case::missingRequiredFields; }
    QString description() const override;
    const char *what() const noexcept override;
};

} // namespace quillmark
