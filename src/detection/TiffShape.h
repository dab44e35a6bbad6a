// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/SampleLayout.h"
#include "detection/TiffHandle.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace quillmark {

/// How samples are stored where that is not already a SampleType.
enum class SamplePacking {
    none,
    bits,    ///< TiffShape::bits each, without gaps, the most significant bit first
    triples, ///< 24 bits
    halves,  ///< floating point of 16 bits
};

/// How strips or tiles are compressed, as far as it matters to how they are read.
enum class TiffCoding {
    stored,
    lzw,
    deflate,
    linked, ///< one strip cannot be decoded without those before it
    whole,  ///< libtiff unpacks all of a strip or tile before it gives the first row
    other,
};

/// Which channels are read: those that luma is made of (lightness alone, where it has a
/// channel of its own), or those of the colours as well.
enum class FrameChannels { luma, colours };

/// How the pixels of a TIFF image lie in its file, and what they stand for once unpacked.
struct TiffShape {
    int width = 0;
    int height = 0;

    int bits = 8; ///< per sample, as stored
    SamplePacking packing = SamplePacking::none;
    int planes = 1;        ///< those to be read: colours apart, or all in one
    int planeChannels = 1; ///< per pixel of a plane
    SampleLayout layout;   ///< of a row put together from all planes

    bool tiled = false;
    int blockWidth = 0;         ///< of a tile, or of a strip, which is the image's
    int blockHeight = 0;        ///< rows of a tile or strip
    std::size_t rowBytes = 0;   ///< of one plane of a block
    std::size_t blockBytes = 0; ///< the same for all rows

    /// Luma and chroma stand in units, of this many luma samples each way and one of either
    /// chroma (TIFF 6.0, section 21). One luma sample means that there are no units.
    int unitWidth = 1;
    int unitHeight = 1;

    TiffCoding coding = TiffCoding::other;
    int predictor = 1;       ///< of lzw and deflate (TIFF 6.0, section 14)
    bool jpegAsRgb = false;  ///< libtiff is to give JPEG-compressed colours as RGB
    bool logAsBytes = false; ///< libtiff is to give logarithmic light as grey or RGB in bytes
    bool swapped = false;    ///< the bytes of a sample, where not compressed
    bool reversed = false;   ///< the bits of a byte, where not compressed

    bool hasUnits() const { return unitWidth * unitHeight > 1; }
    bool isCompressed() const { return coding != TiffCoding::stored; }

    /// Whether rows can be had one after another; otherwise a block is had as a whole.
    bool isReadInRows() const { return !tiled && !hasUnits(); }
};

/// Nothing for an image that cannot be decoded, or not within reason. Prepares the handle.
std::optional<TiffShape> tiffShape(const TiffHandle &tiff, std::uint64_t fileBytes,
                                   FrameChannels wanted);

/// Makes another handle of the same file give what the shape says.
void prepare(const TiffHandle &tiff, const TiffShape &shape);

} // namespace quillmark
