// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/TempDir.h"

#include <cstddef>
#include <filesystem>

namespace quillmark::test {

/// A small file system of its own in a folder, gone with this object. Needs canMount().
class Disk
{
public:
    /// Throws std::system_error.
    explicit Disk(std::size_t bytes);
    Disk(const Disk &) = delete;
    Disk &operator=(const Disk &) = delete;
    ~Disk();

    const std::filesystem::path &path() const { return m_place.path(); }

    /// From now on nobody can write to it. Throws std::system_error.
    void makeReadOnly() const;

    /// Fills it but for these bytes, with a file of this name.
    void fill(const std::filesystem::path &ballast, std::size_t free) const;

private:
    TempDir m_place;
};

} // namespace quillmark::test
