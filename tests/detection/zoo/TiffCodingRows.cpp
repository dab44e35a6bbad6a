// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// How the strips and tiles of a TIFF file are compressed.

#include "detection/zoo/Zoo.h"

#include <utility>

namespace quillmark::test {
namespace {

using Path = std::filesystem::path;

ZooRow tiff(const std::string &name, const std::string &how, const TiffOptions &options,
            bool grey = false)
{
    ZooRow row{name, "TIFF, " + how, {}};
    row.picture = grey ? greySlate : colourSlate;
    row.write = [options, picture = row.picture](const Path &file) {
        writeTiff(file, picture(), options);
    };
    row.bits = options.bits;
    return row;
}

struct Coding {
    const char *name;
    const char *how;
    TiffCompression compression;
};

/// Whatever the coding, it comes in strips and tiles, in one strip, with planes apart.
std::vector<ZooRow> arrangementsOf(const Coding &coding, int bits)
{
    const std::string name = coding.name + std::to_string(bits);
    const std::string how = coding.how + std::string(" of ") + std::to_string(bits) + " bits";
    const TiffCompression compression = coding.compression;
    return {
        tiff(name + "Strips", how + " in strips", {.bits = bits, .compression = compression}),
        tiff(name + "OneStrip", how + " in one strip",
             {.bits = bits, .compression = compression, .rowsPerStrip = 0}),
        tiff(name + "Tiles", how + " in tiles",
             {.bits = bits, .compression = compression, .tileWidth = 112, .tileLength = 80}),
        tiff(name + "Planes", how + ", planes apart",
             {.bits = bits, .compression = compression, .planarSeparate = true}),
    };
}

std::vector<ZooRow> arrangedRows()
{
    using enum TiffCompression;
    std::vector<ZooRow> rows;
    for (const Coding &coding :
         {Coding{"none", "no compression", none}, Coding{"lzw", "LZW", lzw},
          Coding{"deflate", "deflate", deflate}, Coding{"packBits", "PackBits", packBits},
          Coding{"lzma", "LZMA", lzma}, Coding{"zstd", "Zstandard", zstd}}) {
        for (const int bits : {8, 16}) {
            for (ZooRow &row : arrangementsOf(coding, bits)) {
                rows.push_back(std::move(row));
            }
        }
    }
    return rows;
}

std::vector<ZooRow> predictorRows()
{
    using enum TiffCompression;
    using TiffPredictor::floatingPoint;
    using TiffPredictor::horizontal;
    return {
        tiff("lzwDifferences8", "LZW of differences, 8 bits",
             {.compression = lzw, .predictor = horizontal}),
        tiff("lzwDifferences16", "LZW of differences, 16 bits",
             {.bits = 16, .compression = lzw, .predictor = horizontal}),
        tiff("lzwDifferences32", "LZW of differences, 32 bits",
             {.bits = 32, .compression = lzw, .predictor = horizontal}),
        tiff("lzwDifferencesTiles", "LZW of differences in tiles, big-endian",
             {.bits = 16,
              .compression = lzw,
              .predictor = horizontal,
              .tileWidth = 64,
              .tileLength = 64,
              .bigEndian = true}),
        tiff("deflateDifferences8", "deflate of differences, 8 bits",
             {.compression = deflate, .predictor = horizontal}),
        tiff("deflateDifferences16", "deflate of differences, 16 bits",
             {.bits = 16, .compression = deflate, .predictor = horizontal}),
        tiff("deflateDifferencesPlanes", "deflate of differences, planes apart",
             {.bits = 16, .compression = deflate, .predictor = horizontal, .planarSeparate = true}),
        tiff("deflateDifferencesInfrared", "deflate of differences with infrared",
             {.bits = 16, .compression = deflate, .predictor = horizontal, .extraChannels = 1}),
        tiff("deflateHalf", "deflate of floating point of 16 bits, predicted",
             {.bits = 16,
              .compression = deflate,
              .predictor = floatingPoint,
              .floatingPoint = true}),
        tiff("deflateFloat", "deflate of floating point of 32 bits, predicted",
             {.bits = 32,
              .compression = deflate,
              .predictor = floatingPoint,
              .floatingPoint = true}),
        tiff("deflateDouble", "deflate of floating point of 64 bits, predicted",
             {.bits = 64,
              .compression = deflate,
              .predictor = floatingPoint,
              .floatingPoint = true}),
        tiff("lzwFloat", "LZW of floating point, predicted",
             {.bits = 32, .compression = lzw, .predictor = floatingPoint, .floatingPoint = true}),
        tiff("zstdDifferences", "Zstandard of differences, 16 bits",
             {.bits = 16, .compression = zstd, .predictor = horizontal}),
        tiff("lzmaDifferences", "LZMA of differences, 16 bits",
             {.bits = 16, .compression = lzma, .predictor = horizontal}),
    };
}

std::vector<ZooRow> faxRows()
{
    using enum TiffCompression;
    const auto fax = [](const std::string &name, const std::string &how, TiffOptions options) {
        options.bits = 1;
        ZooRow row = tiff(name, how, options, true);
        return row;
    };
    const auto white = TiffPhotometric::minIsWhite;
    return {
        fax("faxRuns", "CCITT run lengths", {.compression = faxRuns, .photometric = white}),
        // Of longer strips, libtiff does not read what it has written itself.
        fax("faxRunsInWords", "CCITT run lengths in words, a row a strip",
            {.compression = faxRunsInWords, .photometric = white, .rowsPerStrip = 1}),
        fax("fax3", "CCITT group 3", {.compression = fax3, .photometric = white}),
        fax("fax3Lines", "CCITT group 3, two-dimensional",
            {.compression = fax3Lines, .photometric = white}),
        fax("fax4", "CCITT group 4", {.compression = fax4, .photometric = white}),
        fax("fax4Black", "CCITT group 4, 0 is black", {.compression = fax4}),
        fax("fax4OneStrip", "CCITT group 4 in one strip",
            {.compression = fax4, .photometric = white, .rowsPerStrip = 0}),
        fax("fax4Tiles", "CCITT group 4 in tiles",
            {.compression = fax4, .photometric = white, .tileWidth = 64, .tileLength = 64}),
        fax("fax3Reversed", "CCITT group 3, bits reversed",
            {.compression = fax3, .photometric = white, .reversedBits = true}),
        fax("fax4Reversed", "CCITT group 4, bits reversed",
            {.compression = fax4, .photometric = white, .reversedBits = true}),
        fax("noneReversed", "1 bit, bits reversed", {.reversedBits = true}),
        fax("packBits1", "PackBits of 1 bit", {.compression = packBits}),
        fax("lzw1", "LZW of 1 bit", {.compression = lzw}),
        fax("deflate1", "deflate of 1 bit", {.compression = deflate}),
    };
}

std::vector<ZooRow> otherRows()
{
    using enum TiffCompression;
    using TiffPhotometric::yCbCr;
    // Written in a quality of 75.
    const auto lossy = [](ZooRow row) {
        row.tolerance = 4;
        return row;
    };
    const auto refused = [](ZooRow row) {
        row.outcome = ZooOutcome::refused;
        return row;
    };
    return {
        tiff("oldDeflate", "deflate under its old number", {.compression = oldDeflate}),
        tiff("lzwReversed", "LZW, bits reversed", {.compression = lzw, .reversedBits = true}),
        tiff("lzwFourBits", "LZW of 4 bits", {.bits = 4, .compression = lzw}),
        tiff("deflateTwelveBits", "deflate of 12 bits", {.bits = 12, .compression = deflate}),
        lossy(tiff("jpegYCbCr", "JPEG, Y'CbCr 4:2:0", {.compression = jpeg, .photometric = yCbCr})),
        lossy(tiff("jpegRgb", "JPEG, RGB", {.compression = jpeg})),
        lossy(tiff("jpegGrey", "JPEG, grey", {.compression = jpeg}, true)),
        lossy(
            tiff("jpegTiles", "JPEG, Y'CbCr in tiles",
                 {.compression = jpeg, .photometric = yCbCr, .tileWidth = 128, .tileLength = 128})),
        lossy(tiff("jpegOneStrip", "JPEG, Y'CbCr in one strip",
                   {.compression = jpeg, .photometric = yCbCr, .rowsPerStrip = 0})),
        lossy(tiff("jpegPlanes", "JPEG, RGB, planes apart",
                   {.compression = jpeg, .planarSeparate = true})),
        lossy(tiff("jpegCmyk", "JPEG, CMYK",
                   {.compression = jpeg, .photometric = TiffPhotometric::cmyk})),
        tiff("webp", "WebP", {.compression = webp}),
        tiff("webpTiles", "WebP in tiles",
             {.compression = webp, .tileWidth = 128, .tileLength = 128}),
        tiff("webpAlpha", "WebP with alpha",
             {.compression = webp, .extraChannels = 1, .extraKind = 2}),
        tiff("lerc", "LERC", {.compression = lerc}),
        tiff("lerc16", "LERC of 16 bits", {.bits = 16, .compression = lerc}),
        tiff("lercFloat", "LERC of floating point",
             {.bits = 32, .compression = lerc, .floatingPoint = true}),
        tiff("pixarLog8", "PixarLog of 8 bits", {.compression = pixarLog}),
        tiff("pixarLog16", "PixarLog of 16 bits", {.bits = 16, .compression = pixarLog}),
        // Its strips come as a whole only, of whatever size they say themselves.
        refused(tiff("jbig", "JBIG", {.bits = 1, .compression = jbig, .rowsPerStrip = 0}, true)),
    };
}

} // namespace

std::vector<ZooRow> tiffCodingRows()
{
    std::vector<ZooRow> rows;
    for (std::vector<ZooRow> some : {arrangedRows(), predictorRows(), faxRows(), otherRows()}) {
        rows.insert(rows.end(), some.begin(), some.end());
    }
    return rows;
}

} // namespace quillmark::test
