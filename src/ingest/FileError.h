// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/Described.h"

#include <QString>

#include <filesystem>
#include <system_error>

namespace quillmark {

/// A file system operation that failed, in words that name what was attempted on which file.
class FileError : public std::filesystem::filesystem_error, public Described
{
public:
    /// `attempt` is the whole sentence without its end, such as "Could not copy “a.jpg”";
    /// the reason is the code's own message.
    FileError(const QString &attempt, const std::filesystem::path &file, std::error_code code);

    QString description() const override { return m_description; }

private:
    QString m_description;
};

} // namespace quillmark
