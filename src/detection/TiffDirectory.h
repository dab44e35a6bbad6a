// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameFile.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace quillmark {

/// The first directory of a TIFF file, big or small, of either byte order, with those entries
/// only that decoding needs. libtiff reads the values of all entries that it is shown into memory,
/// and files may hold profiles and layers of any size, or many entries that share theirs.
class TiffDirectory
{
public:
    /// Nothing where the file has no directory, or one that no program writes. Throws
    /// std::bad_alloc.
    static std::optional<TiffDirectory> read(const FrameFile &file);

    /// Puts itself in the place of the directory that the file has, as far as that lies within
    /// the bytes that were read from an offset of the file.
    void cover(std::uint64_t offset, std::span<std::uint8_t> bytes) const;

private:
    std::uint64_t m_offset = 0;
    std::vector<std::uint8_t> m_bytes; ///< as many as the directory of the file has
};

} // namespace quillmark
