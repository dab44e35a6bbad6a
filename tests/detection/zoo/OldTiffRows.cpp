// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// Codings of TIFF files that are rare by now, and JPEG in them.

#include "detection/zoo/RawFrames.h"
#include "support/TempDir.h"

#include <tiffio.h>

#include <cmath>
#include <memory>
#include <stdexcept>
#include <utility>

namespace quillmark::test {
namespace {

using enum TiffType;
using Path = std::filesystem::path;
using Entries = RawTiffEntries;

/// The strip of a plain file, and its compression, in the place of what is there.
Entries packedAs(Entries entries, std::uint64_t compression, RawTiff &tiff,
                 const std::string &strip)
{
    const std::uint64_t place = tiff.add(strip);
    entries = with(std::move(entries), {259, shortNumber, {compression}});
    entries = with(std::move(entries), {273, longNumber, {place}});
    return with(std::move(entries), {279, longNumber, {strip.size()}});
}

std::string jpegOf(const RasterImage &image, const JpegOptions &options)
{
    const TempDir folder;
    writeJpeg(folder / "a", image, options);
    return readFile(folder / "a");
}

/// A whole JPEG file for a strip (TIFF Technical Note 2 allows for that).
ZooRow jpegStrip(std::string name, const std::string &how, JpegOptions options,
                 std::uint64_t photometric)
{
    return rawRow(std::move(name), how,
                  [options = std::move(options), photometric](Entries entries, RawTiff &tiff) {
                      entries = with(std::move(entries), {262, shortNumber, {photometric}});
                      return packedAs(std::move(entries), COMPRESSION_JPEG, tiff,
                                      jpegOf(colourSlate(), options));
                  });
}

/// For what is read with colours that are not the picture's.
ZooRow anyColours(ZooRow row)
{
    row.tolerance = anyLuma;
    return row;
}

std::vector<ZooRow> jpegRows()
{
    return {
        jpegStrip("jpeg444", "JPEG, Y'CbCr 4:4:4", {.chromaSubsampling = 1}, 6),
        jpegStrip("jpeg422", "JPEG, Y'CbCr 4:2:2",
                  {.chromaSubsampling = 2, .chromaSubsamplingDown = 1}, 6),
        jpegStrip("jpeg420Unsaid", "JPEG, Y'CbCr 4:2:0, not said so", {}, 6),
        jpegStrip("jpegProgressive", "progressive JPEG", {.progressive = true}, 6),
        jpegStrip("jpegRestart", "JPEG with restart markers", {.restartRows = 1}, 6),
        jpegStrip("jpegArithmetic", "JPEG in arithmetic codes", {.arithmetic = true}, 6),
        jpegStrip("jpegRgb", "JPEG, RGB", {.colour = JpegColour::rgb}, 2),
        refused(jpegStrip("jpegSaysRgb", "JPEG, Y'CbCr 4:2:0 said to be RGB", {}, 2)),
        anyColours(jpegStrip("jpegSaysRgb444", "JPEG, Y'CbCr 4:4:4 said to be RGB",
                             {.chromaSubsampling = 1}, 2)),
        rawRow("oldJpeg", "JPEG as TIFF 6.0 had it",
               [](Entries entries, RawTiff &tiff) {
                   const std::string jpeg = jpegOf(colourSlate(), {});
                   entries = with(std::move(entries), {262, shortNumber, {6}});
                   entries = packedAs(std::move(entries), COMPRESSION_OJPEG, tiff, jpeg);
                   const std::uint64_t place = tiff.add(jpeg);
                   entries = with(std::move(entries), {513, longNumber, {place}});
                   entries = with(std::move(entries), {514, longNumber, {jpeg.size()}});
                   return with(std::move(entries), {530, shortNumber, {2, 2}});
               }),
    };
}

/// Codes of 9 bits, the lowest first, as LZW had them before TIFF 5; the table is cleared before
/// codes get longer, so that none is used.
std::string oldLzw(const std::string &bytes)
{
    constexpr unsigned clearCode = 256;
    constexpr unsigned endCode = 257;
    std::string packed;
    unsigned held = 0;
    unsigned count = 0;
    const auto put = [&](unsigned code) {
        held |= code << count;
        count += 9;
        for (; count >= 8; count -= 8, held >>= 8U) {
            packed.push_back(static_cast<char>(held & 0xFFU));
        }
    };
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i % 200 == 0) {
            put(clearCode);
        }
        put(static_cast<unsigned char>(bytes[i]));
    }
    put(endCode);
    return packed + std::string(2, '\0');
}

/// Samples of fewer bits, each row beginning on a byte.
std::string narrow(const RasterImage &image, unsigned bits)
{
    std::string bytes;
    for (int y = 0; y < image.height; ++y) {
        unsigned held = 0;
        unsigned count = 0;
        for (int x = 0; x < image.width; ++x) {
            const unsigned most = (1U << bits) - 1;
            held = held << bits | (image.at(x, y, 0) * most + 32767) / 65535;
            count += bits;
            if (count == 8 || x == image.width - 1) {
                bytes.push_back(static_cast<char>(held << (8 - count)));
                held = 0;
                count = 0;
            }
        }
    }
    return bytes;
}

/// Rows of two bits a pixel as they are: a code of 0 says so.
std::string nextStep(const RasterImage &image)
{
    const std::string rows = narrow(image, 2);
    const std::size_t rowBytes = rows.size() / static_cast<std::size_t>(image.height);
    std::string packed;
    for (std::size_t i = 0; i < rows.size(); i += rowBytes) {
        packed += '\0' + rows.substr(i, rowBytes);
    }
    return packed;
}

/// A byte for each pixel of four bits, the upper two bits saying so.
std::string thunderScan(const RasterImage &image)
{
    std::string packed;
    for (const std::uint16_t sample : image.samples) {
        packed.push_back(static_cast<char>(0xC0 | (sample * 15 + 32767) / 65535));
    }
    return packed;
}

ZooRow narrowRow(const std::string &name, const std::string &how, unsigned bits,
                 std::uint64_t compression, std::string (*pack)(const RasterImage &))
{
    ZooRow row = greyRawRow(name, how, [=](Entries entries, RawTiff &tiff) {
        entries = with(std::move(entries), {258, shortNumber, {bits}});
        return packedAs(std::move(entries), compression, tiff, pack(greySlate()));
    });
    row.bits = static_cast<int>(bits);
    return row;
}

/// LogL or LogLuv (32 or 24 bits), which libtiff makes from CIE XYZ.
void writeLog(const Path &file, std::uint16_t compression, bool grey)
{
    const std::unique_ptr<TIFF, void (*)(TIFF *)> tiff(TIFFOpen(file.c_str(), "w"), TIFFClose);
    if (!tiff) {
        throw std::runtime_error("cannot write " + file.string());
    }
    const RasterImage image = colourSlate();
    TIFFSetField(tiff.get(), TIFFTAG_IMAGEWIDTH, image.width);
    TIFFSetField(tiff.get(), TIFFTAG_IMAGELENGTH, image.height);
    TIFFSetField(tiff.get(), TIFFTAG_BITSPERSAMPLE, 32);
    TIFFSetField(tiff.get(), TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_IEEEFP);
    TIFFSetField(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, grey ? 1 : 3);
    TIFFSetField(tiff.get(), TIFFTAG_PHOTOMETRIC, grey ? PHOTOMETRIC_LOGL : PHOTOMETRIC_LOGLUV);
    TIFFSetField(tiff.get(), TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff.get(), TIFFTAG_ROWSPERSTRIP, 16);
    TIFFSetField(tiff.get(), TIFFTAG_COMPRESSION, compression);
    TIFFSetField(tiff.get(), TIFFTAG_SGILOGDATAFMT, SGILOGDATAFMT_FLOAT);
    for (int y = 0; y < image.height; ++y) {
        std::vector<float> row;
        for (int x = 0; x < image.width; ++x) {
            const auto linear = [&](int channel) {
                return static_cast<float>(std::pow(image.at(x, y, channel) / 65535.0, 2.2));
            };
            const float luminance = 0.2126F * linear(0) + 0.7152F * linear(1) + 0.0722F * linear(2);
            if (grey) {
                row.push_back(luminance);
            } else {
                row.push_back(0.4124F * linear(0) + 0.3576F * linear(1) + 0.1805F * linear(2));
                row.push_back(luminance);
                row.push_back(0.0193F * linear(0) + 0.1192F * linear(1) + 0.9505F * linear(2));
            }
        }
        if (TIFFWriteScanline(tiff.get(), row.data(), static_cast<std::uint32_t>(y), 0) < 0) {
            throw std::runtime_error("cannot write a row");
        }
    }
}

ZooRow logRow(const std::string &name, const std::string &how, std::uint16_t compression, bool grey)
{
    ZooRow row{name, "TIFF, " + how, [=](const Path &file) { writeLog(file, compression, grey); }};
    // Light of that range is not its luma.
    row.tolerance = anyLuma;
    return row;
}

std::vector<ZooRow> rareRows()
{
    ZooRow lzw =
        rawRow("oldLzw", "LZW as it was before TIFF 5", [](Entries entries, RawTiff &tiff) {
            return packedAs(std::move(entries), COMPRESSION_LZW, tiff,
                            oldLzw(packedBytes(colourSlate())));
        });
    return {
        std::move(lzw),
        narrowRow("nextStep", "grey of 2 bits in NeXT's coding", 2, COMPRESSION_NEXT, nextStep),
        narrowRow("thunderScan", "grey of 4 bits in ThunderScan's coding", 4,
                  COMPRESSION_THUNDERSCAN, thunderScan),
        logRow("logL", "LogL", COMPRESSION_SGILOG, true),
        logRow("logLuv", "LogLuv of 32 bits", COMPRESSION_SGILOG, false),
        logRow("logLuv24", "LogLuv of 24 bits", COMPRESSION_SGILOG24, false),
    };
}

} // namespace

std::vector<ZooRow> oldTiffRows()
{
    std::vector<ZooRow> rows = jpegRows();
    for (ZooRow &row : rareRows()) {
        rows.push_back(std::move(row));
    }
    return rows;
}

} // namespace quillmark::test
