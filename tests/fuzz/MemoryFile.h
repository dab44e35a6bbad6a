// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/UniqueFd.h"
#include "fuzz/Target.h"

#include <filesystem>

namespace quillmark::fuzz {

/// A file that is on no disk, for what reads files. It goes with this object.
class MemoryFile
{
public:
    /// Throws std::runtime_error.
    explicit MemoryFile(Bytes content);

    /// Good within this process.
    const std::filesystem::path &path() const { return m_path; }

private:
    UniqueFd m_fd;
    std::filesystem::path m_path;
};

} // namespace quillmark::fuzz
