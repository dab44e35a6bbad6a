// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/TiffDeflate.h"
#include "detection/TiffHandle.h"
#include "detection/TiffInflate.h"
#include "detection/TiffLzw.h"
#include "detection/TiffShape.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
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

    /// About how many bytes are held at once to read the image.
    static std::uint64_t workingBytes(const TiffHandle &tiff, const TiffShape &shape);

    /// Says which rows stripRow() will be asked for next, all of one strip.
    void expectRows(int y, int count);

    /// A row of a strip, as stored; null where it cannot be decoded, and then the rest of its
    /// strip cannot either. Within a strip, rows are asked for from the top. The bytes stay
    /// valid until the next call.
    const std::uint8_t *stripRow(int y);

    /// All bytes of the tile or strip that holds a pixel; null where it cannot be decoded.
    /// They stay valid until the next call.
    const std::uint8_t *block(int x, int y);

private:
    std::uint32_t stripAt(int y) const;
    TiffSpan span(std::uint32_t block) const;
    std::span<std::uint8_t> readBlock(std::uint32_t number, std::size_t size);
    std::span<std::uint8_t> unpackBlock(std::uint32_t number, std::size_t size);
    void finishRows(std::span<std::uint8_t> rows) const;
    const std::uint8_t *storedRow(int y);
    const std::uint8_t *wholeStripRow(int y);
    const std::uint8_t *inflatedRow(int y);
    const std::uint8_t *unpackedRow(int y);
    const std::uint8_t *decodedRow(const TiffHandle &tiff, int y);

    TiffHandle m_tiff;
    std::optional<TiffHandle> m_rows; ///< for rows of strips that cannot be decoded as a whole
    const TiffShape &m_shape;
    std::uint16_t m_plane;
    std::vector<std::uint8_t> m_buffer;
    std::vector<std::uint8_t> m_row;
    std::span<const std::uint8_t> m_whole; ///< m_strip, or nothing where it is damaged
    int m_expectedTo = 0;
    int m_bufferedFrom = 0; ///< rows
    int m_bufferedTo = 0;
    std::optional<std::uint32_t> m_strip; ///< the one that was tried last
    TiffDeflate m_deflate;
    std::unique_ptr<TiffInflate> m_inflate; ///< of the strip that is being read row by row
    std::unique_ptr<TiffLzw> m_lzw;
    bool m_isLzwOver = false; ///< nothing more comes from the strip that m_lzw reads
};

} // namespace quillmark
