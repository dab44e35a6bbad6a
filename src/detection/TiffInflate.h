// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameFile.h"
#include "detection/TiffDeflate.h"

#include <zlib.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace quillmark {

/// Unpacks a strip that zlib has packed while it is read, so that it may have any size, and as
/// far as it is not damaged.
class TiffInflate
{
public:
    /// The file outlives this. Throws std::bad_alloc.
    TiffInflate(const FrameFile &file, const TiffSpan &packed);
    ~TiffInflate();

    TiffInflate(const TiffInflate &) = delete;
    TiffInflate &operator=(const TiffInflate &) = delete;

    /// Fills `out` with what comes next; false where that cannot be had in full, and then
    /// nothing more comes.
    bool read(std::span<std::uint8_t> out);

private:
    void refill();

    const FrameFile &m_file;
    std::uint64_t m_offset;
    std::uint64_t m_end;
    std::vector<std::uint8_t> m_input;
    z_stream m_stream{};
    bool m_isOver = false;
};

} // namespace quillmark
