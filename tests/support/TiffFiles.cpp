// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/TiffSamples.h"

#include <tiffio.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>

namespace quillmark::test {
namespace {

using TiffHandle = std::unique_ptr<TIFF, void (*)(TIFF *)>;

int photometricTag(TiffPhotometric photometric)
{
    switch (photometric) {
    case TiffPhotometric::automatic:
    case TiffPhotometric::minIsBlack:
        return PHOTOMETRIC_MINISBLACK;
    case TiffPhotometric::minIsWhite:
        return PHOTOMETRIC_MINISWHITE;
    case TiffPhotometric::palette:
        return PHOTOMETRIC_PALETTE;
    case TiffPhotometric::rgb:
        return PHOTOMETRIC_RGB;
    case TiffPhotometric::cmyk:
        return PHOTOMETRIC_SEPARATED;
    case TiffPhotometric::lab:
        return PHOTOMETRIC_CIELAB;
    case TiffPhotometric::iccLab:
        return PHOTOMETRIC_ICCLAB;
    case TiffPhotometric::yCbCr:
        return PHOTOMETRIC_YCBCR;
    }
    throw std::logic_error("no such photometric interpretation");
}

int compressionTag(TiffCompression compression)
{
    switch (compression) {
    case TiffCompression::none:
        return COMPRESSION_NONE;
    case TiffCompression::lzw:
        return COMPRESSION_LZW;
    case TiffCompression::deflate:
        return COMPRESSION_ADOBE_DEFLATE;
    case TiffCompression::oldDeflate:
        return COMPRESSION_DEFLATE;
    case TiffCompression::packBits:
        return COMPRESSION_PACKBITS;
    case TiffCompression::jpeg:
        return COMPRESSION_JPEG;
    case TiffCompression::faxRuns:
        return COMPRESSION_CCITTRLE;
    case TiffCompression::faxRunsInWords:
        return COMPRESSION_CCITTRLEW;
    case TiffCompression::fax3:
    case TiffCompression::fax3Lines:
        return COMPRESSION_CCITTFAX3;
    case TiffCompression::fax4:
        return COMPRESSION_CCITTFAX4;
    case TiffCompression::lzma:
        return COMPRESSION_LZMA;
    case TiffCompression::zstd:
        return COMPRESSION_ZSTD;
    case TiffCompression::webp:
        return COMPRESSION_WEBP;
    case TiffCompression::lerc:
        return COMPRESSION_LERC;
    case TiffCompression::jbig:
        return COMPRESSION_JBIG;
    case TiffCompression::pixarLog:
        return COMPRESSION_PIXARLOG;
    }
    throw std::logic_error("no such compression");
}

/// From white to black, or from yellow to blue.
void setPalette(TIFF *tiff, int bits, bool coloured)
{
    const std::size_t count = std::size_t{1} << static_cast<unsigned>(bits);
    std::vector<std::uint16_t> falling(count);
    for (std::size_t i = 0; i < count; ++i) {
        falling[i] = static_cast<std::uint16_t>(65535 - 65535 * i / (count - 1));
    }
    const std::vector<std::uint16_t> rising(falling.rbegin(), falling.rend());
    TIFFSetField(tiff, TIFFTAG_COLORMAP, falling.data(), falling.data(),
                 coloured ? rising.data() : falling.data());
}

bool hasOwnUnits(const TiffOptions &options)
{
    return options.photometric == TiffPhotometric::yCbCr &&
           options.compression != TiffCompression::jpeg;
}

int subsamplingDown(const TiffOptions &options)
{
    return options.chromaSubsamplingDown.value_or(options.chromaSubsampling);
}

int channelsOf(const RasterImage &image, const TiffOptions &options)
{
    return static_cast<int>(storedPixel(image, options, 0, 0).size());
}

void setTags(TIFF *tiff, const RasterImage &image, const TiffOptions &options)
{
    const int channels = channelsOf(image, options);
    const TiffPhotometric photometric = resolvedPhotometric(options, image);
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, image.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, image.height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, options.bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, channels);
    TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT,
                 options.floatingPoint   ? SAMPLEFORMAT_IEEEFP
                 : options.signedNumbers ? SAMPLEFORMAT_INT
                                         : SAMPLEFORMAT_UINT);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, photometricTag(photometric));
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG,
                 options.planarSeparate ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, compressionTag(options.compression));
    if (options.compression == TiffCompression::fax3Lines) {
        TIFFSetField(tiff, TIFFTAG_GROUP3OPTIONS, GROUP3OPT_2DENCODING);
    }
    if (options.compression == TiffCompression::pixarLog) {
        TIFFSetField(tiff, TIFFTAG_PIXARLOGDATAFMT,
                     options.bits == 16 ? PIXARLOGDATAFMT_16BIT : PIXARLOGDATAFMT_8BIT);
    }
    if (options.predictor != TiffPredictor::none) {
        TIFFSetField(tiff, TIFFTAG_PREDICTOR, static_cast<int>(options.predictor));
    }
    if (options.reversedBits) {
        TIFFSetField(tiff, TIFFTAG_FILLORDER, FILLORDER_LSB2MSB);
    }
    if (options.orientation) {
        TIFFSetField(tiff, TIFFTAG_ORIENTATION, *options.orientation);
    }
    if (options.extraChannels > 0) {
        const std::vector<std::uint16_t> kinds(static_cast<std::size_t>(options.extraChannels),
                                               options.extraKind);
        TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, options.extraChannels, kinds.data());
    }
    if (photometric == TiffPhotometric::palette) {
        setPalette(tiff, options.bits, options.colouredPalette);
    }
    if (photometric == TiffPhotometric::yCbCr) {
        if (options.compression == TiffCompression::jpeg) {
            TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
        } else {
            TIFFSetField(tiff, TIFFTAG_YCBCRSUBSAMPLING, options.chromaSubsampling,
                         subsamplingDown(options));
        }
    }
    if (options.tileWidth > 0) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, options.tileWidth);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, options.tileLength);
    } else {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP,
                     options.rowsPerStrip > 0 ? options.rowsPerStrip : image.height);
    }
}

/// The blocks of a page in the order of their numbers, planes one after the other.
std::vector<TiffBlock> blocksOf(const RasterImage &image, const TiffOptions &options)
{
    const bool tiled = options.tileWidth > 0;
    const int width = tiled ? options.tileWidth : image.width;
    const int height = tiled                      ? options.tileLength
                       : options.rowsPerStrip > 0 ? options.rowsPerStrip
                                                  : image.height;
    std::vector<TiffBlock> blocks;
    for (int plane = 0; plane < (options.planarSeparate ? channelsOf(image, options) : 1);
         ++plane) {
        for (int y = 0; y < image.height; y += height) {
            for (int x = 0; x < image.width; x += width) {
                TiffBlock block{
                    x, y, width, tiled ? height : std::min(height, image.height - y), {}};
                if (options.planarSeparate) {
                    block.channel = plane;
                }
                blocks.push_back(block);
            }
        }
    }
    return blocks;
}

void writeBlocks(TIFF *tiff, const RasterImage &image, const TiffOptions &options)
{
    std::uint32_t number = 0;
    for (const TiffBlock &block : blocksOf(image, options)) {
        const bool inUnits =
            hasOwnUnits(options) && options.chromaSubsampling * subsamplingDown(options) > 1;
        std::vector<std::uint8_t> bytes =
            inUnits ? packedUnits(image, options, block) : packedSamples(image, options, block);
        const auto size = static_cast<tmsize_t>(bytes.size());
        const tmsize_t written = options.tileWidth > 0
                                     ? TIFFWriteEncodedTile(tiff, number, bytes.data(), size)
                                     : TIFFWriteEncodedStrip(tiff, number, bytes.data(), size);
        if (written < 0) {
            throw std::runtime_error("cannot write strip or tile " + std::to_string(number));
        }
        ++number;
    }
}

void writeDirectory(TIFF *tiff)
{
    if (TIFFWriteDirectory(tiff) == 0) {
        throw std::runtime_error("cannot write the directory");
    }
}

TiffHandle opened(const std::filesystem::path &file, const std::string &mode)
{
    TiffHandle tiff(TIFFOpen(file.c_str(), mode.c_str()), TIFFClose);
    if (!tiff) {
        throw std::runtime_error("cannot open " + file.string());
    }
    return tiff;
}

/// The tables of offsets and byte counts are put behind the directory while they are empty
/// and filled in later.
void writeDirectoryFirst(const std::filesystem::path &file, const std::string &mode,
                         const RasterImage &image, const TiffOptions &options)
{
    {
        const TiffHandle tiff = opened(file, mode);
        setTags(tiff.get(), image, options);
        if (TIFFDeferStrileArrayWriting(tiff.get()) == 0 ||
            TIFFWriteCheck(tiff.get(), options.tileWidth > 0 ? 1 : 0, "test") == 0) {
            throw std::runtime_error("cannot begin with the directory");
        }
        writeDirectory(tiff.get());
        if (TIFFSetDirectory(tiff.get(), 0) == 0 || TIFFForceStrileArrayWriting(tiff.get()) == 0) {
            throw std::runtime_error("cannot write the empty tables");
        }
    }
    writeBlocks(opened(file, "r+").get(), image, options);
}

} // namespace

void writeTiff(const std::filesystem::path &file, const std::vector<RasterImage> &pages,
               const TiffOptions &options)
{
    const std::string mode =
        std::string("w") + (options.bigEndian ? 'b' : 'l') + (options.bigTiff ? "8" : "4");
    if (options.directoryFirst) {
        writeDirectoryFirst(file, mode, pages.at(0), options);
        return;
    }
    const TiffHandle tiff = opened(file, mode);
    for (const RasterImage &page : pages) {
        setTags(tiff.get(), page, options);
        writeBlocks(tiff.get(), page, options);
        writeDirectory(tiff.get());
    }
}

void writeTiff(const std::filesystem::path &file, const RasterImage &image,
               const TiffOptions &options)
{
    writeTiff(file, std::vector<RasterImage>{image}, options);
}

std::vector<ByteRange> tiffBlocks(const std::filesystem::path &file)
{
    const TiffHandle tiff = opened(file, "r");
    const bool tiled = TIFFIsTiled(tiff.get()) != 0;
    const std::uint32_t count =
        tiled ? TIFFNumberOfTiles(tiff.get()) : TIFFNumberOfStrips(tiff.get());
    std::vector<ByteRange> ranges;
    for (std::uint32_t i = 0; i < count; ++i) {
        ranges.push_back(
            {TIFFGetStrileOffset(tiff.get(), i), TIFFGetStrileByteCount(tiff.get(), i)});
    }
    return ranges;
}

} // namespace quillmark::test
