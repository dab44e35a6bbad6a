// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffDirectory.h"

#include <tiff.h>

#include <algorithm>
#include <array>
#include <cstddef>

namespace quillmark {
namespace {

/// What libtiff decodes pixels by, in ascending order.
constexpr auto neededTags = std::to_array<std::uint16_t>({TIFFTAG_IMAGEWIDTH,
                                                          TIFFTAG_IMAGELENGTH,
                                                          TIFFTAG_BITSPERSAMPLE,
                                                          TIFFTAG_COMPRESSION,
                                                          TIFFTAG_PHOTOMETRIC,
                                                          TIFFTAG_FILLORDER,
                                                          TIFFTAG_STRIPOFFSETS,
                                                          TIFFTAG_SAMPLESPERPIXEL,
                                                          TIFFTAG_ROWSPERSTRIP,
                                                          TIFFTAG_STRIPBYTECOUNTS,
                                                          TIFFTAG_PLANARCONFIG,
                                                          TIFFTAG_GROUP3OPTIONS,
                                                          TIFFTAG_GROUP4OPTIONS,
                                                          TIFFTAG_PREDICTOR,
                                                          TIFFTAG_COLORMAP,
                                                          TIFFTAG_TILEWIDTH,
                                                          TIFFTAG_TILELENGTH,
                                                          TIFFTAG_TILEOFFSETS,
                                                          TIFFTAG_TILEBYTECOUNTS,
                                                          TIFFTAG_EXTRASAMPLES,
                                                          TIFFTAG_SAMPLEFORMAT,
                                                          TIFFTAG_JPEGTABLES,
                                                          TIFFTAG_JPEGPROC,
                                                          TIFFTAG_JPEGIFOFFSET,
                                                          TIFFTAG_JPEGIFBYTECOUNT,
                                                          TIFFTAG_JPEGRESTARTINTERVAL,
                                                          TIFFTAG_JPEGQTABLES,
                                                          TIFFTAG_JPEGDCTABLES,
                                                          TIFFTAG_JPEGACTABLES,
                                                          TIFFTAG_YCBCRCOEFFICIENTS,
                                                          TIFFTAG_YCBCRSUBSAMPLING,
                                                          TIFFTAG_YCBCRPOSITIONING,
                                                          TIFFTAG_REFERENCEBLACKWHITE,
                                                          TIFFTAG_MATTEING,
                                                          TIFFTAG_DATATYPE,
                                                          TIFFTAG_LERC_PARAMETERS});
static_assert(std::ranges::is_sorted(neededTags));

/// More than libtiff takes.
constexpr std::uint64_t maximumEntries = 4096;

/// More values than any entry in use has: places of strips of a single row, for each colour of
/// an image of 300 000 rows, and of the others a palette of 16 bits.
constexpr std::uint64_t maximumPlaces = 1U << 20U;
constexpr std::uint64_t maximumValues = 3U << 16U;

bool isOfPlaces(std::uint64_t tag)
{
    return tag == TIFFTAG_STRIPOFFSETS || tag == TIFFTAG_STRIPBYTECOUNTS ||
           tag == TIFFTAG_TILEOFFSETS || tag == TIFFTAG_TILEBYTECOUNTS;
}

/// How numbers and entries are laid out: TIFF 6.0, section 2, and BigTIFF.
struct Layout {
    bool bigEndian = false;
    bool bigTiff = false;

    std::size_t offsetBytes() const { return bigTiff ? 8 : 4; }
    std::size_t countBytes() const { return bigTiff ? 8 : 2; }
    std::size_t entryBytes() const { return bigTiff ? 20 : 12; }

    std::uint64_t number(std::span<const std::uint8_t> bytes) const
    {
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            value = value << 8U | bytes[bigEndian ? i : bytes.size() - 1 - i];
        }
        return value;
    }

    void setNumber(std::span<std::uint8_t> bytes, std::uint64_t value) const
    {
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            bytes[bigEndian ? bytes.size() - 1 - i : i] =
                static_cast<std::uint8_t>(value >> (8 * i) & 0xFFU);
        }
    }
};

} // namespace

std::optional<TiffDirectory> TiffDirectory::read(const FrameFile &file)
{
    std::array<std::uint8_t, 16> head{};
    const std::size_t got = file.readAt(0, head.data(), head.size());
    Layout layout{head[0] == 'M', false};
    layout.bigTiff = layout.number(std::span(head).subspan(2, 2)) == 43;
    if (got < (layout.bigTiff ? 16U : 8U)) {
        return std::nullopt;
    }
    TiffDirectory directory;
    directory.m_offset =
        layout.number(std::span(head).subspan(layout.bigTiff ? 8 : 4, layout.offsetBytes()));

    std::vector<std::uint8_t> &bytes = directory.m_bytes;
    bytes.resize(layout.countBytes());
    if (file.readAt(directory.m_offset, bytes.data(), bytes.size()) < bytes.size()) {
        return std::nullopt;
    }
    const std::uint64_t count = layout.number(bytes);
    if (count == 0 || count > maximumEntries) {
        return std::nullopt;
    }
    // The place of the next directory comes last, and some files end before it.
    const std::size_t end =
        layout.countBytes() + static_cast<std::size_t>(count) * layout.entryBytes();
    bytes.resize(end + layout.offsetBytes());
    const std::size_t there = file.readAt(directory.m_offset, bytes.data(), bytes.size());
    if (there < end) {
        return std::nullopt;
    }

    std::size_t kept = layout.countBytes();
    for (std::size_t at = kept; at < end; at += layout.entryBytes()) {
        const std::span entry = std::span(bytes).subspan(at, layout.entryBytes());
        const std::uint64_t tag = layout.number(entry.subspan(0, 2));
        if (!std::ranges::binary_search(neededTags, tag)) {
            continue;
        }
        if (layout.number(entry.subspan(4, layout.offsetBytes())) >
            (isOfPlaces(tag) ? maximumPlaces : maximumValues)) {
            return std::nullopt;
        }
        std::ranges::copy(entry, bytes.begin() + static_cast<std::ptrdiff_t>(kept));
        kept += layout.entryBytes();
    }
    layout.setNumber(std::span(bytes).subspan(0, layout.countBytes()),
                     (kept - layout.countBytes()) / layout.entryBytes());
    // No other directory is of interest.
    std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(kept), bytes.end(), std::uint8_t{0});
    bytes.resize(there);
    return directory;
}

void TiffDirectory::cover(std::uint64_t offset, std::span<std::uint8_t> bytes) const
{
    const std::uint64_t from = std::max(offset, m_offset);
    const std::uint64_t to = std::min(offset + bytes.size(), m_offset + m_bytes.size());
    for (std::uint64_t at = from; at < to; ++at) {
        bytes[static_cast<std::size_t>(at - offset)] =
            m_bytes[static_cast<std::size_t>(at - m_offset)];
    }
}

} // namespace quillmark
