// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffShape.h"

#include "detection/FrameLimits.h"

#include <algorithm>

namespace quillmark {
namespace {

/// What a byte is believed to expand to. Codings pack zeros a thousand times smaller and more,
/// but scans of film hardly ten times, and those of paper in black and white less than a hundred.
constexpr std::uint64_t bytesPerByte = 64;

/// The same without compression, which leaves room for a file that was cut short.
constexpr std::uint64_t storedBytesPerByte = 4;

/// Bounds of what is held at once besides the image: a row, and a tile (which cannot be
/// decoded in part) where it does not fit the image, or a strip that libtiff unpacks as a whole.
constexpr std::uint64_t maximumRowBytes = 64U << 20U;
constexpr std::uint64_t tileBytesOnTrust = 64U << 20U;
constexpr std::uint64_t tileBytesPerPixel = 8;
constexpr std::uint64_t wholeStripBytes = 32U << 20U;

/// More channels than any scanner has.
constexpr int maximumChannels = 64;

struct SampleFormat {
    SampleType type = SampleType::uint8;
    SamplePacking packing = SamplePacking::none;
};

std::optional<SampleFormat> sampleFormat(int bits, bool floating)
{
    if (floating) {
        switch (bits) {
        case 16:
            return SampleFormat{SampleType::float32, SamplePacking::halves};
        case 32:
            return SampleFormat{SampleType::float32};
        case 64:
            return SampleFormat{SampleType::float64};
        default:
            return std::nullopt;
        }
    }
    switch (bits) {
    case 8:
        return SampleFormat{SampleType::uint8};
    case 16:
        return SampleFormat{SampleType::uint16};
    case 24:
        return SampleFormat{SampleType::uint32, SamplePacking::triples};
    case 32:
        return SampleFormat{SampleType::uint32};
    default:
        break;
    }
    if (bits < 1 || bits > 16) {
        return std::nullopt;
    }
    return SampleFormat{bits < 8 ? SampleType::uint8 : SampleType::uint16, SamplePacking::bits};
}

bool isFax(std::uint16_t compression)
{
    return compression == COMPRESSION_CCITTRLE || compression == COMPRESSION_CCITTRLEW ||
           compression == COMPRESSION_CCITTFAX3 || compression == COMPRESSION_CCITTFAX4;
}

std::uint16_t photometricOf(const TiffHandle &tiff, std::uint16_t channels,
                            std::uint16_t compression)
{
    const std::uint16_t usual = isFax(compression) ? PHOTOMETRIC_MINISWHITE
                                : channels >= 3    ? PHOTOMETRIC_RGB
                                                   : PHOTOMETRIC_MINISBLACK;
    return tiff.tag<std::uint16_t>(TIFFTAG_PHOTOMETRIC, usual);
}

TiffCoding codingOf(std::uint16_t compression)
{
    switch (compression) {
    case COMPRESSION_NONE:
        return TiffCoding::stored;
    case COMPRESSION_LZW:
        return TiffCoding::lzw;
    case COMPRESSION_ADOBE_DEFLATE:
    case COMPRESSION_DEFLATE:
        return TiffCoding::deflate;
    case COMPRESSION_OJPEG:
        return TiffCoding::linked;
    case COMPRESSION_WEBP:
    case COMPRESSION_LERC:
    case COMPRESSION_PIXARLOG:
        return TiffCoding::whole;
    default:
        return TiffCoding::other;
    }
}

std::optional<SampleKind> kindOf(std::uint16_t photometric, int channels)
{
    switch (photometric) {
    case PHOTOMETRIC_MINISBLACK:
    case PHOTOMETRIC_LOGL:
        return SampleKind::grey;
    case PHOTOMETRIC_YCBCR:
        return SampleKind::yCbCr;
    case PHOTOMETRIC_MINISWHITE:
        return SampleKind::invertedGrey;
    case PHOTOMETRIC_PALETTE:
        return SampleKind::palette;
    case PHOTOMETRIC_SEPARATED:
        return SampleKind::inks;
    case PHOTOMETRIC_CIELAB:
    case PHOTOMETRIC_ICCLAB:
    case PHOTOMETRIC_ITULAB:
        return SampleKind::lab;
    case PHOTOMETRIC_MASK:
        return std::nullopt;
    default: // RGB, and sensor data, which come close to it
        return channels >= 3 ? SampleKind::rgb : SampleKind::grey;
    }
}

bool readPalette(const TiffHandle &tiff, int bits, SampleLayout &layout)
{
    const std::uint16_t *red = nullptr;
    const std::uint16_t *green = nullptr;
    const std::uint16_t *blue = nullptr;
    if (bits > 8 || TIFFGetField(tiff.get(), TIFFTAG_COLORMAP, &red, &green, &blue) != 1) {
        return false;
    }
    const std::size_t count = std::size_t{1} << static_cast<unsigned>(bits);
    // Colours have 16 bits, but some programs wrote them with 8.
    std::uint16_t most = 0;
    for (const std::uint16_t *channel : {red, green, blue}) {
        most = std::max(most, *std::max_element(channel, channel + count));
    }
    const std::uint32_t scale = most < 256 ? 257 : 1;
    for (std::size_t i = 0; i < count; ++i) {
        layout.palette[i] = {static_cast<std::uint16_t>(red[i] * scale),
                             static_cast<std::uint16_t>(green[i] * scale),
                             static_cast<std::uint16_t>(blue[i] * scale)};
    }
    return true;
}

/// The channels behind luma or lightness, as far as they are there in full: chroma that is
/// stored apart is smaller than luma unless the file says otherwise.
ChromaCoding chromaOf(const TiffHandle &tiff, std::uint16_t photometric, const TiffShape &shape,
                      bool separate)
{
    if (shape.layout.type != SampleType::uint8 && shape.layout.type != SampleType::uint16) {
        return ChromaCoding::absent;
    }
    switch (photometric) {
    case PHOTOMETRIC_YCBCR: {
        std::uint16_t across = 1;
        std::uint16_t down = 1;
        TIFFGetFieldDefaulted(tiff.get(), TIFFTAG_YCBCRSUBSAMPLING, &across, &down);
        return separate && across * down > 1 ? ChromaCoding::absent : ChromaCoding::middle;
    }
    case PHOTOMETRIC_ICCLAB:
        return ChromaCoding::middle;
    case PHOTOMETRIC_CIELAB:
        return ChromaCoding::zero;
    default: // the ranges of ITULAB are the fax machine's own
        return ChromaCoding::absent;
    }
}

bool readColours(const TiffHandle &tiff, std::uint16_t compression, FrameChannels wanted,
                 TiffShape &shape)
{
    const auto channels = tiff.tag<std::uint16_t>(TIFFTAG_SAMPLESPERPIXEL, 1);
    const std::uint16_t photometric = photometricOf(tiff, channels, compression);
    const bool separate =
        channels > 1 &&
        tiff.tag<std::uint16_t>(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) == PLANARCONFIG_SEPARATE;
    std::optional<SampleKind> kind = kindOf(photometric, channels);
    const bool isLight = photometric == PHOTOMETRIC_LOGL || photometric == PHOTOMETRIC_LOGLUV;
    if (!kind || isLight != shape.logAsBytes) {
        return false;
    }
    if (photometric == PHOTOMETRIC_YCBCR && !separate) {
        if (compression == COMPRESSION_JPEG && channels == 3) {
            shape.jpegAsRgb = true;
            prepare(tiff, shape);
            kind = SampleKind::rgb;
        } else if (channels == 3) {
            std::uint16_t across = 1;
            std::uint16_t down = 1;
            TIFFGetFieldDefaulted(tiff.get(), TIFFTAG_YCBCRSUBSAMPLING, &across, &down);
            shape.unitWidth = across;
            shape.unitHeight = down;
        }
    }
    SampleLayout &layout = shape.layout;
    layout.kind = *kind;
    if (wanted == FrameChannels::colours && layout.kind != SampleKind::rgb && channels >= 3) {
        layout.chroma = chromaOf(tiff, photometric, shape, separate);
    }
    const int coloured = colourChannels(layout.kind, layout.chroma);
    shape.planes = separate ? coloured : 1;
    shape.planeChannels = separate ? 1 : channels;
    layout.channels = separate           ? shape.planes
                      : shape.hasUnits() ? coloured // luma and chroma, or luma alone
                                         : channels;
    if (channels < coloured || channels > maximumChannels) {
        return false;
    }
    return layout.kind != SampleKind::palette || readPalette(tiff, shape.bits, layout);
}

bool readSamples(const TiffHandle &tiff, std::uint16_t compression, TiffShape &shape)
{
    shape.logAsBytes = compression == COMPRESSION_SGILOG || compression == COMPRESSION_SGILOG24;
    prepare(tiff, shape);
    shape.bits = tiff.tag<std::uint16_t>(TIFFTAG_BITSPERSAMPLE, 1);
    const auto stored = tiff.tag<std::uint16_t>(TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
    if (stored == SAMPLEFORMAT_COMPLEXINT || stored == SAMPLEFORMAT_COMPLEXIEEEFP) {
        return false;
    }
    const std::optional<SampleFormat> format =
        sampleFormat(shape.bits, stored == SAMPLEFORMAT_IEEEFP);
    if (!format) {
        return false;
    }
    shape.layout.type = format->type;
    shape.packing = format->packing;
    return true;
}

/// Units are read only as they are found in practice, in bytes.
bool hasUsualUnits(const TiffShape &shape)
{
    const auto usual = [](int step) { return step == 1 || step == 2 || step == 4; };
    return !shape.hasUnits() ||
           (shape.bits == 8 && usual(shape.unitWidth) && usual(shape.unitHeight));
}

std::uint64_t ceilDivided(std::uint64_t value, int by)
{
    const auto divisor = static_cast<std::uint64_t>(by);
    return (value + divisor - 1) / divisor;
}

bool readBlocks(const TiffHandle &tiff, TiffShape &shape)
{
    const std::uint64_t pixels =
        static_cast<std::uint64_t>(shape.width) * static_cast<std::uint64_t>(shape.height);
    shape.tiled = TIFFIsTiled(tiff.get()) != 0;
    const auto width = shape.tiled ? tiff.tag<std::uint32_t>(TIFFTAG_TILEWIDTH, 0)
                                   : static_cast<std::uint32_t>(shape.width);
    const auto height = shape.tiled
                            ? tiff.tag<std::uint32_t>(TIFFTAG_TILELENGTH, 0)
                            : std::min(tiff.tag<std::uint32_t>(TIFFTAG_ROWSPERSTRIP, UINT32_MAX),
                                       static_cast<std::uint32_t>(shape.height));
    const std::uint64_t rowBytes = shape.tiled
                                       ? static_cast<std::uint64_t>(TIFFTileRowSize(tiff.get()))
                                       : TIFFScanlineSize64(tiff.get());
    const std::uint64_t blockBytes =
        shape.tiled ? TIFFTileSize64(tiff.get()) : TIFFStripSize64(tiff.get());
    const std::uint64_t rowSamples =
        shape.hasUnits()
            ? ceilDivided(width, shape.unitWidth) * ceilDivided(height, shape.unitHeight) *
                  static_cast<std::uint64_t>(shape.unitWidth * shape.unitHeight + 2)
            : std::uint64_t{width} * static_cast<std::uint64_t>(shape.planeChannels);
    const std::uint64_t neededBytes =
        ceilDivided(rowSamples * static_cast<std::uint64_t>(shape.bits), 8);
    // A strip without units is decoded row by row, so it may have any size.
    const bool whole = !shape.isReadInRows();
    if (width == 0 || height == 0 || width > maximumPixels || height > maximumPixels ||
        rowBytes > maximumRowBytes || (shape.hasUnits() ? blockBytes : rowBytes) < neededBytes ||
        (whole && blockBytes > tileBytesOnTrust + pixels * tileBytesPerPixel)) {
        return false;
    }
    shape.blockWidth = static_cast<int>(width);
    shape.blockHeight = static_cast<int>(height);
    shape.rowBytes = static_cast<std::size_t>(rowBytes);
    shape.blockBytes = static_cast<std::size_t>(blockBytes);
    return true;
}

} // namespace

std::optional<TiffShape> tiffShape(const TiffHandle &tiff, std::uint64_t fileBytes,
                                   FrameChannels wanted)
{
    TiffShape shape;
    const auto compression = tiff.tag<std::uint16_t>(TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    // A strip of JBIG cannot be decoded in rows; nobody scans film into it.
    if (TIFFIsCODECConfigured(compression) == 0 || compression == COMPRESSION_JBIG) {
        return std::nullopt;
    }
    if (!readSamples(tiff, compression, shape) || !readColours(tiff, compression, wanted, shape) ||
        !isConvertible(shape.layout) || !hasUsualUnits(shape)) {
        return std::nullopt;
    }

    const auto width = tiff.tag<std::uint32_t>(TIFFTAG_IMAGEWIDTH, 0);
    const auto height = tiff.tag<std::uint32_t>(TIFFTAG_IMAGELENGTH, 0);
    const std::uint64_t pixelBits = static_cast<std::uint64_t>(shape.bits) *
                                    tiff.tag<std::uint16_t>(TIFFTAG_SAMPLESPERPIXEL, 1);
    const std::uint64_t expansion =
        compression == COMPRESSION_NONE ? storedBytesPerByte : bytesPerByte;
    if (!isPlausibleSize(std::uint64_t{width} * height, fileBytes,
                         std::max<std::uint64_t>(expansion * 8 / pixelBits, 1))) {
        return std::nullopt;
    }
    shape.width = static_cast<int>(width);
    shape.height = static_cast<int>(height);
    shape.coding = codingOf(compression);
    if (shape.coding == TiffCoding::lzw || shape.coding == TiffCoding::deflate) {
        shape.predictor = tiff.tag<std::uint16_t>(TIFFTAG_PREDICTOR, PREDICTOR_NONE);
    }
    shape.swapped = TIFFIsByteSwapped(tiff.get()) != 0;
    shape.reversed =
        tiff.tag<std::uint16_t>(TIFFTAG_FILLORDER, FILLORDER_MSB2LSB) == FILLORDER_LSB2MSB;
    if (!readBlocks(tiff, shape) ||
        (shape.coding == TiffCoding::whole && shape.blockBytes > wholeStripBytes)) {
        return std::nullopt;
    }
    return shape;
}

void prepare(const TiffHandle &tiff, const TiffShape &shape)
{
    if (shape.jpegAsRgb) {
        TIFFSetField(tiff.get(), TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    }
    if (shape.logAsBytes) {
        TIFFSetField(tiff.get(), TIFFTAG_SGILOGDATAFMT, SGILOGDATAFMT_8BIT);
    }
}

} // namespace quillmark
