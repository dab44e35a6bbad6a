// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// TIFF files of which a few bytes unpack to very many pixels.

#include "detection/zoo/Bombs.h"
#include "detection/zoo/RawFrames.h"
#include "support/TempDir.h"

#include <tiffio.h>
#include <zlib.h>

#include <memory>
#include <stdexcept>
#include <utility>

namespace quillmark::test {
namespace {

using enum TiffType;
using Path = std::filesystem::path;
using Entries = RawTiffEntries;

/// Zeros in zlib's format, made from one block over and over: packing them takes no time.
std::string packedZeros(std::uint64_t count)
{
    constexpr std::size_t block = 1U << 20U;
    std::vector<Bytef> zeros(block);
    std::vector<Bytef> packed(block);
    z_stream stream{};
    if (deflateInit2(&stream, 9, Z_DEFLATED, -15, 9, Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::runtime_error("cannot pack");
    }
    stream.next_in = zeros.data();
    stream.avail_in = static_cast<uInt>(zeros.size());
    stream.next_out = packed.data();
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FULL_FLUSH);
    const std::string once(reinterpret_cast<const char *>(packed.data()), stream.total_out);
    deflateEnd(&stream);

    std::string all("\x78\xDA");
    uLong sum = adler32(0, nullptr, 0);
    const uLong sumOfBlock = adler32(sum, zeros.data(), static_cast<uInt>(zeros.size()));
    for (std::uint64_t done = 0; done < count; done += block) {
        all += once;
        sum = adler32_combine(sum, sumOfBlock, static_cast<z_off_t>(block));
    }
    all += std::string("\x03\0", 2); // an empty block, the last one
    for (const unsigned shift : {24U, 16U, 8U, 0U}) {
        all.push_back(static_cast<char>(sum >> shift & 0xFFU));
    }
    return all;
}

struct Gigapixel {
    std::uint64_t side = 31000;
    std::uint64_t channels = 1;
    std::uint64_t bits = 8;
};

Entries entriesOf(const Gigapixel &picture, std::uint64_t compression)
{
    Entries entries = plainEntries({1, 1, static_cast<int>(picture.channels), {}}, 0);
    entries = with(std::move(entries), {256, longNumber, {picture.side}});
    entries = with(std::move(entries), {257, longNumber, {picture.side}});
    entries = with(std::move(entries),
                   {258, shortNumber, std::vector<std::uint64_t>(picture.channels, picture.bits)});
    entries = with(std::move(entries), {278, longNumber, {picture.side}});
    return with(std::move(entries), {259, shortNumber, {compression}});
}

Bomb oneStrip(std::string name, const std::string &how, const Gigapixel &picture, double megapixels)
{
    return {std::move(name), "TIFF, " + how,
            [=](const Path &file) {
                const std::string strip =
                    packedZeros(picture.side * picture.side * picture.channels * picture.bits / 8);
                RawTiff tiff;
                Entries entries = entriesOf(picture, COMPRESSION_ADOBE_DEFLATE);
                entries = with(std::move(entries), {273, longNumber, {tiff.add(strip)}});
                entries = with(std::move(entries), {279, longNumber, {strip.size()}});
                tiff.addDirectory(entries);
                writeBytes(file, tiff.bytes());
            },
            megapixels};
}

/// A strip of zeros as libtiff packs it.
std::string packed(std::uint16_t compression, const Gigapixel &picture, std::uint64_t rows)
{
    const TempDir folder;
    const Path file = folder / "a";
    {
        const std::unique_ptr<TIFF, void (*)(TIFF *)> tiff(TIFFOpen(file.c_str(), "w"), TIFFClose);
        if (!tiff) {
            throw std::runtime_error("cannot write");
        }
        TIFFSetField(tiff.get(), TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(picture.side));
        TIFFSetField(tiff.get(), TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(rows));
        TIFFSetField(tiff.get(), TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(rows));
        TIFFSetField(tiff.get(), TIFFTAG_BITSPERSAMPLE, static_cast<int>(picture.bits));
        TIFFSetField(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, static_cast<int>(picture.channels));
        TIFFSetField(tiff.get(), TIFFTAG_PHOTOMETRIC,
                     picture.channels == 1 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
        TIFFSetField(tiff.get(), TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
        TIFFSetField(tiff.get(), TIFFTAG_COMPRESSION, compression);
        std::vector<std::uint8_t> zeros(static_cast<std::size_t>(TIFFStripSize(tiff.get())));
        if (TIFFWriteEncodedStrip(tiff.get(), 0, zeros.data(),
                                  static_cast<tmsize_t>(zeros.size())) < 0) {
            throw std::runtime_error("cannot pack");
        }
    }
    const ByteRange range = tiffBlocks(file).at(0);
    return readFile(file).substr(range.offset, range.size);
}

/// Very many strips that are all the same one.
Bomb sharedStrip(std::string name, const std::string &how, std::uint16_t compression,
                 const Gigapixel &picture, double megapixels, std::uint64_t rows = 50)
{
    return {std::move(name), "TIFF, " + how,
            [=](const Path &file) {
                const std::string strip = packed(compression, picture, rows);
                RawTiff tiff;
                const std::uint64_t place = tiff.add(strip);
                const std::uint64_t strips = (picture.side + rows - 1) / rows;
                Entries entries = entriesOf(picture, compression);
                entries = with(std::move(entries), {278, longNumber, {rows}});
                entries = with(std::move(entries),
                               {273, longNumber, std::vector<std::uint64_t>(strips, place)});
                entries = with(std::move(entries),
                               {279, longNumber, std::vector<std::uint64_t>(strips, strip.size())});
                tiff.addDirectory(entries);
                writeBytes(file, tiff.bytes());
            },
            megapixels};
}

} // namespace

std::vector<Bomb> packedBombs()
{
    return {
        oneStrip("deflateGrey", "a gigapixel of zeros in one strip of deflate", {}, 0),
        oneStrip("deflateRgb16", "a gigapixel of 48 bits in one strip of deflate",
                 {.channels = 3, .bits = 16}, 0),
        oneStrip("deflateOnTrust", "64 megapixels of 48 bits in one strip of deflate",
                 {.side = 8000, .channels = 3, .bits = 16}, 64),
        sharedStrip("none", "a gigapixel of one strip without compression", COMPRESSION_NONE, {},
                    0),
        sharedStrip("lzw", "a gigapixel of one strip of LZW", COMPRESSION_LZW, {}, 0),
        sharedStrip("packBits", "a gigapixel of one strip of PackBits", COMPRESSION_PACKBITS, {},
                    0),
        sharedStrip("fax4", "a gigapixel of one strip of CCITT group 4", COMPRESSION_CCITTFAX4,
                    {.bits = 1}, 0),
        sharedStrip("zstd", "a gigapixel of one strip of Zstandard", COMPRESSION_ZSTD, {}, 0),
        sharedStrip("lzma", "a gigapixel of one strip of LZMA", COMPRESSION_LZMA, {}, 0),
        sharedStrip("jpeg", "a gigapixel of one strip of JPEG", COMPRESSION_JPEG, {}, 0, 48),
        sharedStrip("lzmaOneStrip", "16 megapixels of 48 bits in one strip of LZMA",
                    COMPRESSION_LZMA, {.side = 4000, .channels = 3, .bits = 16}, 16, 4000),
        sharedStrip("zstdOneStrip", "16 megapixels of 48 bits in one strip of Zstandard",
                    COMPRESSION_ZSTD, {.side = 4000, .channels = 3, .bits = 16}, 16, 4000),
        sharedStrip("webpOneStrip", "16 megapixels in one strip of WebP", COMPRESSION_WEBP,
                    {.side = 4000, .channels = 3}, 0, 4000),
        sharedStrip("lercOneStrip", "16 megapixels in one strip of LERC", COMPRESSION_LERC,
                    {.side = 4000}, 16, 4000),
    };
}

} // namespace quillmark::test
