// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffPlane.h"

#include "detection/TiffRowBytes.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace quillmark {
namespace {

/// A strip of more bytes than this is decoded row by row.
constexpr std::size_t wholeStripBytes = 4U << 20U;

/// Nothing but a band of an image without compression is held.
constexpr std::uint64_t storedBytes = 1U << 20U;

/// LZW and deflate are much faster over a whole strip than row by row, and all other codings
/// are not, or put up with damage in another way.
bool isReadWhole(const TiffShape &shape)
{
    return (shape.coding == TiffCoding::lzw || shape.coding == TiffCoding::deflate) &&
           shape.blockBytes <= wholeStripBytes;
}

/// libtiff holds all of a strip's packed bytes, and a scan may be a single strip; it takes
/// what it has left in a buffer for the end of a damaged tile; and it takes longer.
bool isUnpackedHere(const TiffShape &shape)
{
    constexpr std::size_t mostTileBytes = 64U << 20U;
    const bool plain = shape.predictor == PREDICTOR_NONE;
    const bool differences = shape.predictor == PREDICTOR_HORIZONTAL &&
                             (shape.bits == 8 || shape.bits == 16 || shape.bits == 32);
    const bool known = shape.coding == TiffCoding::lzw || shape.coding == TiffCoding::deflate;
    const bool bounded = !shape.tiled || shape.blockBytes <= mostTileBytes;
    return known && bounded && !shape.hasUnits() && !shape.reversed && (plain || differences);
}

} // namespace

TiffPlane::TiffPlane(TiffHandle tiff, const TiffShape &shape, int plane)
    : m_tiff(std::move(tiff)), m_shape(shape), m_plane(static_cast<std::uint16_t>(plane))
{}

std::uint64_t TiffPlane::workingBytes(const TiffHandle &tiff, const TiffShape &shape)
{
    if (!shape.isReadInRows()) {
        return shape.blockBytes + tiff.largestBlock();
    }
    if (!shape.isCompressed()) {
        return std::max<std::uint64_t>(storedBytes, shape.rowBytes);
    }
    if (isReadWhole(shape)) {
        return shape.blockBytes + tiff.largestBlock();
    }
    return shape.rowBytes + (isUnpackedHere(shape) ? 0 : tiff.largestBlock());
}

void TiffPlane::expectRows(int y, int count)
{
    m_expectedTo = y + count;
}

const std::uint8_t *TiffPlane::stripRow(int y)
{
    if (!m_shape.isCompressed()) {
        return storedRow(y);
    }
    if (isReadWhole(m_shape)) {
        return wholeStripRow(y);
    }
    return isUnpackedHere(m_shape) ? unpackedRow(y) : decodedRow(m_tiff, y);
}

std::uint32_t TiffPlane::stripAt(int y) const
{
    return TIFFComputeStrip(m_tiff.get(), static_cast<std::uint32_t>(y), m_plane);
}

/// libtiff reads a strip without compression in one piece, and a scan may be a single strip
/// of hundreds of megabytes.
const std::uint8_t *TiffPlane::storedRow(int y)
{
    if (y < m_bufferedFrom || y >= m_bufferedTo) {
        const int inStrip = y % m_shape.blockHeight;
        const std::uint64_t strip = TIFFGetStrileOffset(m_tiff.get(), stripAt(y));
        if (strip == 0) {
            return nullptr;
        }
        m_buffer.resize(static_cast<std::size_t>(std::max(m_expectedTo - y, 1)) * m_shape.rowBytes);
        const std::size_t got =
            m_tiff.file().readAt(strip + static_cast<std::uint64_t>(inStrip) * m_shape.rowBytes,
                                 m_buffer.data(), m_buffer.size());
        m_bufferedFrom = y;
        m_bufferedTo = y + static_cast<int>(got / m_shape.rowBytes);
        toMachineOrder(m_buffer, m_shape);
    }
    return y < m_bufferedTo
               ? m_buffer.data() + static_cast<std::size_t>(y - m_bufferedFrom) * m_shape.rowBytes
               : nullptr;
}

TiffSpan TiffPlane::span(std::uint32_t block) const
{
    return {TIFFGetStrileOffset(m_tiff.get(), block), TIFFGetStrileByteCount(m_tiff.get(), block)};
}

/// Of a damaged strip the rows before the damage are read one by one, with a handle of their own
/// because that of whole strips does not go back.
const std::uint8_t *TiffPlane::wholeStripRow(int y)
{
    const std::uint32_t strip = stripAt(y);
    const int from = y - y % m_shape.blockHeight;
    if (m_strip != strip) {
        const int rows = std::min(m_shape.blockHeight, m_shape.height - from);
        const std::size_t size = static_cast<std::size_t>(rows) * m_shape.rowBytes;
        m_strip = strip;
        m_whole = isUnpackedHere(m_shape) ? unpackBlock(strip, size) : readBlock(strip, size);
    }
    if (!m_whole.empty()) {
        return m_whole.data() + static_cast<std::size_t>(y - from) * m_shape.rowBytes;
    }
    if (isUnpackedHere(m_shape) && m_shape.coding == TiffCoding::deflate) {
        return inflatedRow(y);
    }
    if (!m_rows) {
        m_rows.emplace(m_tiff.file());
    }
    return *m_rows ? decodedRow(*m_rows, y) : nullptr;
}

/// A row of a strip that is too large to be held.
const std::uint8_t *TiffPlane::unpackedRow(int y)
{
    if (m_shape.coding == TiffCoding::deflate) {
        return inflatedRow(y);
    }
    if (!m_lzw) {
        m_lzw = std::make_unique<TiffLzw>();
    }
    if (y % m_shape.blockHeight == 0) {
        m_lzw->begin(m_tiff.file(), span(stripAt(y)));
        m_isLzwOver = false;
    }
    if (!m_isLzwOver) {
        const std::span<const std::uint8_t> row = m_lzw->next(m_shape.rowBytes);
        if (!row.empty()) {
            m_row.assign(row.begin(), row.end());
            finishRows(m_row);
            return m_row.data();
        }
        m_isLzwOver = true;
    }
    return decodedRow(m_tiff, y);
}

const std::uint8_t *TiffPlane::inflatedRow(int y)
{
    if (y % m_shape.blockHeight == 0) {
        m_inflate = std::make_unique<TiffInflate>(m_tiff.file(), span(stripAt(y)));
    }
    m_row.resize(m_shape.rowBytes);
    if (!m_inflate->read(m_row)) {
        return nullptr;
    }
    finishRows(m_row);
    return m_row.data();
}

const std::uint8_t *TiffPlane::decodedRow(const TiffHandle &tiff, int y)
{
    m_row.resize(m_shape.rowBytes);
    const bool read =
        TIFFReadScanline(tiff.get(), m_row.data(), static_cast<std::uint32_t>(y), m_plane) == 1;
    return read ? m_row.data() : nullptr;
}

const std::uint8_t *TiffPlane::block(int x, int y)
{
    const std::uint32_t number = m_shape.tiled
                                     ? TIFFComputeTile(m_tiff.get(), static_cast<std::uint32_t>(x),
                                                       static_cast<std::uint32_t>(y), 0, m_plane)
                                     : stripAt(y);
    const std::size_t size = m_shape.blockBytes;
    if (!isUnpackedHere(m_shape)) {
        return readBlock(number, size).data();
    }
    if (const std::span<std::uint8_t> unpacked = unpackBlock(number, size); !unpacked.empty()) {
        return unpacked.data();
    }
    if (m_shape.coding != TiffCoding::deflate) {
        return readBlock(number, size).data();
    }
    // It may have more than it should, and no fault otherwise.
    m_buffer.resize(size);
    if (!TiffInflate(m_tiff.file(), span(number)).read(m_buffer)) {
        return nullptr;
    }
    finishRows(m_buffer);
    return m_buffer.data();
}

/// All of a strip or tile, by libtiff; nothing where it cannot be decoded.
std::span<std::uint8_t> TiffPlane::readBlock(std::uint32_t number, std::size_t size)
{
    m_buffer.resize(size);
    if (m_shape.coding != TiffCoding::stored && m_shape.coding != TiffCoding::lzw) {
        // Some codings pass over damage and leave gaps.
        std::fill(m_buffer.begin(), m_buffer.end(), std::uint8_t{0});
    }
    const auto room = static_cast<tmsize_t>(size);
    const tmsize_t got = m_shape.tiled
                             ? TIFFReadEncodedTile(m_tiff.get(), number, m_buffer.data(), room)
                             : TIFFReadEncodedStrip(m_tiff.get(), number, m_buffer.data(), room);
    return got >= 0 ? std::span(m_buffer) : std::span<std::uint8_t>();
}

/// The same without libtiff; nothing also where there is anything unusual about it.
std::span<std::uint8_t> TiffPlane::unpackBlock(std::uint32_t number, std::size_t size)
{
    std::span<std::uint8_t> unpacked;
    if (m_shape.coding == TiffCoding::lzw) {
        if (!m_lzw) {
            m_lzw = std::make_unique<TiffLzw>();
        }
        unpacked = m_lzw->unpack(m_tiff.file(), span(number), size);
    } else {
        m_buffer.resize(size);
        if (m_deflate.unpack(m_tiff.file(), span(number), m_buffer)) {
            unpacked = m_buffer;
        }
    }
    finishRows(unpacked);
    return unpacked;
}

/// From what was packed to samples.
void TiffPlane::finishRows(std::span<std::uint8_t> rows) const
{
    toMachineOrder(rows, m_shape);
    if (m_shape.predictor != PREDICTOR_HORIZONTAL) {
        return;
    }
    for (std::size_t i = 0; i < rows.size(); i += m_shape.rowBytes) {
        addDifferences(rows.subspan(i, m_shape.rowBytes), m_shape.bits, m_shape.planeChannels);
    }
}

} // namespace quillmark
