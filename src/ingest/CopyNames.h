// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <system_error>

namespace quillmark {

/// The two names of a copy under way, which its failures tell.
class CopyNames
{
public:
    CopyNames(std::filesystem::path source, std::filesystem::path destination);

    const std::filesystem::path &source() const { return m_source; }
    const std::filesystem::path &destination() const { return m_destination; }

    /// Throws the FileError of this copy; without a reason, that of errno.
    [[noreturn]] void fail(std::error_code reason) const;
    [[noreturn]] void fail() const;
    void check(bool succeeded) const
    {
        if (!succeeded) {
            fail();
        }
    }

private:
    std::filesystem::path m_source;
    std::filesystem::path m_destination;
};

} // namespace quillmark
