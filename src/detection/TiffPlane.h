// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/TiffHandle.h"
#include "detection/TiffShape.h"

#include <cstdint>
#include <vector>

namespace quillmark {

/// One plane of a TIFF image: all colours of a pixel together, or one colour alone. Several
/// planes are read with a handle each, because a handle that goes to and fro between strips
/// decodes them from their beginning each time.
class TiffPlane
{
public:
    /// The handle and the shape belong to the same file.
    TiffPlane(TiffHandle tiff, const TiffShape &shape, int plane);

    /// A row of a strip, as stored; null where it cannot be decoded, and then the rest of its
    /// strip cannot either. Within a strip, rows are asked for from the top. The bytes stay
    /// valid until the next call.
    const std::uint8_t *stripRow(int y);

    /// All bytes of the tile or strip that holds a pixel; null where it cannot be decoded.
    /// They stay valid until the next call.
    const std::uint8_t *block(int x, int y);

private:
    const std::uint8_t *storedRow(int y);

    TiffHandle m_tiff;
    const TiffShape &m_shape;
    std::uint16_t m_plane;
    std::vector<std::uint8_t> m_buffer;
    int m_bufferedFrom = 0; ///< rows of an image without compression
    int m_bufferedTo = 0;
};

} // namespace quillmark
