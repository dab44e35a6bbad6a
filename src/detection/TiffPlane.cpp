// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffPlane.h"

#include <algorithm>
#include <utility>

namespace quillmark {
namespace {

/// As much of an image without compression as is read at once.
constexpr std::size_t bandBytes = 1U << 20U;

/// Turns bytes as they are in the file into samples as this machine has them.
void putRight(std::vector<std::uint8_t> &bytes, const TiffShape &shape)
{
    const auto size = static_cast<tmsize_t>(bytes.size());
    if (shape.reversed) {
        TIFFReverseBits(bytes.data(), size);
    }
    if (!shape.swapped) {
        return;
    }
    switch (shape.bits) {
    case 16:
        TIFFSwabArrayOfShort(reinterpret_cast<std::uint16_t *>(bytes.data()), size / 2);
        break;
    case 24:
        TIFFSwabArrayOfTriples(bytes.data(), size / 3);
        break;
    case 32:
        TIFFSwabArrayOfLong(reinterpret_cast<std::uint32_t *>(bytes.data()), size / 4);
        break;
    case 64:
        TIFFSwabArrayOfLong8(reinterpret_cast<std::uint64_t *>(bytes.data()), size / 8);
        break;
    default:
        break;
    }
}

} // namespace

TiffPlane::TiffPlane(TiffHandle tiff, const TiffShape &shape, int plane)
    : m_tiff(std::move(tiff)), m_shape(shape), m_plane(static_cast<std::uint16_t>(plane))
{}

const std::uint8_t *TiffPlane::stripRow(int y)
{
    if (!m_shape.compressed) {
        return storedRow(y);
    }
    m_buffer.resize(m_shape.rowBytes);
    const bool read = TIFFReadScanline(m_tiff.get(), m_buffer.data(), static_cast<std::uint32_t>(y),
                                       m_plane) == 1;
    return read ? m_buffer.data() : nullptr;
}

/// libtiff reads a strip without compression in one piece, and a scan may be a single strip
/// of hundreds of megabytes.
const std::uint8_t *TiffPlane::storedRow(int y)
{
    if (y < m_bufferedFrom || y >= m_bufferedTo) {
        const int inStrip = y % m_shape.blockHeight;
        const int left = std::min(m_shape.blockHeight - inStrip, m_shape.height - y);
        // Rows that are asked for one here and one there come alone.
        const int wanted = y == m_bufferedTo
                               ? std::clamp(static_cast<int>(bandBytes / m_shape.rowBytes), 1, left)
                               : 1;
        const std::uint64_t strip = TIFFGetStrileOffset(
            m_tiff.get(), TIFFComputeStrip(m_tiff.get(), static_cast<std::uint32_t>(y), m_plane));
        if (strip == 0) {
            return nullptr;
        }
        m_buffer.resize(static_cast<std::size_t>(wanted) * m_shape.rowBytes);
        const std::size_t got =
            m_tiff.file().readAt(strip + static_cast<std::uint64_t>(inStrip) * m_shape.rowBytes,
                                 m_buffer.data(), m_buffer.size());
        m_bufferedFrom = y;
        m_bufferedTo = y + static_cast<int>(got / m_shape.rowBytes);
        putRight(m_buffer, m_shape);
    }
    return y < m_bufferedTo
               ? m_buffer.data() + static_cast<std::size_t>(y - m_bufferedFrom) * m_shape.rowBytes
               : nullptr;
}

const std::uint8_t *TiffPlane::block(int x, int y)
{
    m_buffer.resize(m_shape.blockBytes);
    const auto size = static_cast<tmsize_t>(m_buffer.size());
    const auto column = static_cast<std::uint32_t>(x);
    const auto row = static_cast<std::uint32_t>(y);
    const tmsize_t got =
        m_shape.tiled
            ? TIFFReadEncodedTile(m_tiff.get(),
                                  TIFFComputeTile(m_tiff.get(), column, row, 0, m_plane),
                                  m_buffer.data(), size)
            : TIFFReadEncodedStrip(m_tiff.get(), TIFFComputeStrip(m_tiff.get(), row, m_plane),
                                   m_buffer.data(), size);
    return got >= 0 ? m_buffer.data() : nullptr;
}

} // namespace quillmark
