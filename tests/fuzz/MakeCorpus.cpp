// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/ImageFiles.h"
#include "support/TempDir.h"
#include "support/simulator/PlainCode.h"
#include "support/simulator/QrMatrix.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

// Writes the corpora of the targets whose inputs are no texts: as small as such files get, one for
// each thing that a decoder knows.

namespace quillmark::test {
namespace {

namespace fs = std::filesystem;

void write(const fs::path &file, const std::string &content)
{
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(content.data(), static_cast<std::streamsize>(content.size()));
    if (!out.flush()) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

/// Slopes with some edges, so that every coding has something to do.
RasterImage picture(int width, int height, int channels)
{
    RasterImage image{width, height, channels, {}};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool square = (x / 5 + y / 5) % 3 == 0;
            for (int channel = 0; channel < channels; ++channel) {
                const int slope = channel == 1 ? y * 65535 / height : x * 65535 / width;
                image.samples.push_back(static_cast<std::uint16_t>(square ? 65535 - slope : slope));
            }
        }
    }
    return image;
}

// --- JPEG --------------------------------------------------------------------

void writeJpegs(const fs::path &folder)
{
    const RasterImage colours = picture(37, 23, 3);
    const RasterImage grey = picture(21, 18, 1);
    const auto add = [&](const char *name, const RasterImage &image, const JpegOptions &options) {
        writeJpeg(folder / (std::string(name) + ".jpg"), image, options);
    };
    add("ycc", colours, {});
    add("ycc-444", colours, {.chromaSubsampling = 1});
    add("rough", colours, {.quality = 5});
    add("fine", picture(9, 9, 3), {.quality = 100});
    add("grey", grey, {.colour = JpegColour::grey});
    add("rgb", colours, {.colour = JpegColour::rgb, .chromaSubsampling = 1});
    add("rgb-unmarked", colours,
        {.colour = JpegColour::rgb, .adobeMarker = false, .chromaSubsampling = 1});
    add("cmyk", colours, {.colour = JpegColour::cmyk, .chromaSubsampling = 1});
    add("cmyk-plain", colours,
        {.colour = JpegColour::cmyk, .adobeMarker = false, .chromaSubsampling = 1});
    add("ycck", colours, {.colour = JpegColour::ycck, .chromaSubsampling = 1});
    add("progressive", colours, {.progressive = true});
    add("progressive-grey", grey, {.progressive = true, .colour = JpegColour::grey});
    add("progressive-ycck", colours,
        {.progressive = true, .colour = JpegColour::ycck, .chromaSubsampling = 1});
    add("progressive-restarts", colours, {.progressive = true, .restartRows = 1});
    add("restarts", colours, {.restartRows = 1});
    add("pixel", picture(1, 1, 3), {});
    add("column", picture(1, 40, 1), {.colour = JpegColour::grey});
    for (const int orientation : {3, 6, 8}) {
        add(("turned-" + std::to_string(orientation)).c_str(), grey, {.orientation = orientation});
    }
    add("exif-long", grey, {.app1 = exifOrientationBlock(6, 4)});
    add("exif-text", grey, {.app1 = exifOrientationBlock(6, 2)});
    add("exif-cut", grey, {.app1 = exifOrientationBlock(6).substr(0, 20)});
    add("exif-none", grey, {.app1 = "http://ns.adobe.com/xap/1.0/"});

    const std::string whole = readFile(folder / "progressive.jpg");
    write(folder / "cut-in-a-scan.jpg", whole.substr(0, whole.size() * 2 / 3));
    const std::string plain = readFile(folder / "restarts.jpg");
    write(folder / "cut-in-the-picture.jpg", plain.substr(0, plain.size() - 60));
    std::string damaged = plain;
    damaged.replace(damaged.size() - 90, 20, 20, '\xFF');
    write(folder / "damaged.jpg", damaged);
}

// --- TIFF --------------------------------------------------------------------

void addTiff(const fs::path &folder, const std::string &name, const RasterImage &image,
             const TiffOptions &options)
{
    writeTiff(folder / (name + ".tif"), image, options);
}

void writeTiffCodings(const fs::path &folder)
{
    const RasterImage colours = picture(19, 13, 3);
    const RasterImage grey = picture(33, 17, 1);
    const auto add = [&](const std::string &name, const RasterImage &image,
                         const TiffOptions &options) { addTiff(folder, name, image, options); };
    using C = TiffCompression;
    using P = TiffPredictor;
    add("stored", colours, {});
    add("stored-16", colours, {.bits = 16});
    add("stored-32", grey, {.bits = 32});
    add("stored-big-endian", colours, {.bits = 16, .bigEndian = true});
    add("lzw", colours, {.compression = C::lzw});
    add("lzw-difference", colours, {.compression = C::lzw, .predictor = P::horizontal});
    add("lzw-16", colours, {.bits = 16, .compression = C::lzw, .predictor = P::horizontal});
    add("lzw-one-strip", grey, {.compression = C::lzw, .rowsPerStrip = 0});
    add("deflate", colours, {.compression = C::deflate});
    add("deflate-16", colours, {.bits = 16, .compression = C::deflate, .predictor = P::horizontal});
    add("deflate-big-endian", colours,
        {.bits = 16, .compression = C::deflate, .predictor = P::horizontal, .bigEndian = true});
    add("deflate-float", grey,
        {.bits = 32,
         .compression = C::deflate,
         .predictor = P::floatingPoint,
         .floatingPoint = true});
    add("packbits", colours, {.compression = C::packBits});
    add("jpeg", colours, {.compression = C::jpeg});
    add("jpeg-ycc", colours, {.compression = C::jpeg, .photometric = TiffPhotometric::yCbCr});
    add("fax4", grey, {.bits = 1, .compression = C::fax4});
    add("reversed-bits", grey, {.bits = 1, .reversedBits = true});
    add("strips-of-3", colours, {.compression = C::deflate, .rowsPerStrip = 3});
}

void writeTiffLayouts(const fs::path &folder)
{
    const RasterImage colours = picture(19, 13, 3);
    const RasterImage grey = picture(33, 17, 1);
    const auto add = [&](const std::string &name, const RasterImage &image,
                         const TiffOptions &options) { addTiff(folder, name, image, options); };
    using C = TiffCompression;
    for (const int bits : {1, 2, 4, 7, 12}) {
        add("bits-" + std::to_string(bits), grey, {.bits = bits});
    }
    add("tiles", grey, {.tileWidth = 16, .tileLength = 16});
    add("tiles-lzw", colours, {.compression = C::lzw, .tileWidth = 16, .tileLength = 16});
    add("tiles-16", colours,
        {.bits = 16, .compression = C::deflate, .tileWidth = 16, .tileLength = 16});
    add("planes", colours, {.planarSeparate = true});
    add("planes-deflate", colours, {.bits = 16, .compression = C::deflate, .planarSeparate = true});
    add("planes-tiles", colours,
        {.compression = C::lzw, .tileWidth = 16, .tileLength = 16, .planarSeparate = true});
    add("big", colours, {.bigTiff = true});
    add("big-big-endian", grey, {.bits = 16, .bigTiff = true, .bigEndian = true});
    add("infrared", colours, {.bits = 16, .extraChannels = 1});
    add("white-is-zero", grey, {.photometric = TiffPhotometric::minIsWhite});
    add("palette", grey, {.photometric = TiffPhotometric::palette});
    add("palette-4", grey, {.bits = 4, .photometric = TiffPhotometric::palette});
    add("cmyk", colours, {.photometric = TiffPhotometric::cmyk});
    add("lab", colours, {.photometric = TiffPhotometric::lab});
    add("icc-lab", colours, {.bits = 16, .photometric = TiffPhotometric::iccLab});
    add("ycc", colours, {.photometric = TiffPhotometric::yCbCr});
    add("ycc-units", colours, {.photometric = TiffPhotometric::yCbCr, .chromaSubsampling = 2});
    add("float", grey, {.bits = 32, .floatingPoint = true});
    add("float-stray", grey,
        {.bits = 32, .floatingPoint = true, .floatWhite = 1000, .floatStray = -1e30F});
    add("turned", grey, {.orientation = 6});
    add("directory-first", grey, {.directoryFirst = true});
    writeTiff(folder / "pages.tif", {grey, colours});
    // Strips that are too large to be held are unpacked in rows.
    const RasterImage black{1400, 1100, 3, std::vector<std::uint16_t>(3 * 1400 * 1100)};
    add("large-strip-lzw", black, {.compression = C::lzw, .rowsPerStrip = 0});
    add("large-strip-deflate", black, {.compression = C::deflate, .rowsPerStrip = 0});

    const std::string whole = readFile(folder / "directory-first.tif");
    write(folder / "cut.tif", whole.substr(0, whole.size() - 200));
    std::string damaged = readFile(folder / "deflate.tif");
    damaged.replace(30, 8, 8, '\x55');
    write(folder / "damaged.tif", damaged);
    damaged = readFile(folder / "large-strip-deflate.tif");
    damaged.replace(damaged.size() / 2, 8, 8, '\x55');
    write(folder / "large-strip-damaged.tif", damaged);
}

// --- Strips ------------------------------------------------------------------

/// The strip of a TIFF file behind the coding, the number of rows, and their length.
void writeStrips(const fs::path &folder)
{
    const TempDir scratch;
    const fs::path file = scratch / "strip.tif";
    struct Shape {
        int width, height;
    };
    for (const Shape &shape : {Shape{33, 17}, Shape{1, 200}, Shape{400, 9}}) {
        for (const int coding : {0, 1}) {
            writeTiff(file, picture(shape.width, shape.height, 1),
                      {.compression = coding == 0 ? TiffCompression::lzw : TiffCompression::deflate,
                       .rowsPerStrip = 0});
            const ByteRange strip = tiffBlocks(file).at(0);
            std::string input{static_cast<char>(coding), static_cast<char>(shape.height - 1),
                              static_cast<char>((shape.width - 1) >> 8),
                              static_cast<char>((shape.width - 1) & 0xFF)};
            input += readFile(file).substr(strip.offset, strip.size);
            const std::string name = (coding == 0 ? "lzw-" : "deflate-") +
                                     std::to_string(shape.width) + 'x' +
                                     std::to_string(shape.height);
            write(folder / name, input);
            write(folder / (name + "-cut"), input.substr(0, input.size() * 3 / 4));
        }
    }
}

// --- Codes -------------------------------------------------------------------

/// The width, the orientation, and the rows.
void writeLuma(const fs::path &file, const LumaImage &image, int orientation = 1)
{
    std::string input{static_cast<char>((image.width - 1) >> 8),
                      static_cast<char>((image.width - 1) & 0xFF), static_cast<char>(orientation)};
    input.append(image.pixels.begin(), image.pixels.end());
    write(file, input);
}

void writeCodes(const fs::path &folder)
{
    const QrMatrix small = encodeQr("slate", QrLevel::L);
    const QrMatrix larger = encodeQr(QByteArray(60, 'q'), QrLevel::M);
    const QrMatrix versionSeven = encodeQr("seven", QrLevel::H, 7);
    writeLuma(folder / "small", drawCode(small, 2));
    writeLuma(folder / "three-pixels", drawCode(small, 3, 2));
    writeLuma(folder / "larger", drawCode(larger, 2));
    writeLuma(folder / "version-seven", drawCode(versionSeven, 2));
    writeLuma(folder / "negative", negativeOf(drawCode(small, 2)));
    writeLuma(folder / "two", sideBySide(drawCode(small, 2), drawCode(small, 2)));
    for (int orientation = 1; orientation <= 8; ++orientation) {
        writeLuma(folder / ("turned-" + std::to_string(orientation)),
                  storedWithOrientation(drawCode(small, 2), orientation), orientation);
    }
    writeLuma(folder / "no-orientation", drawCode(small, 2), 99);
    const auto segments = [&](const char *name, const std::vector<QrSegment> &content) {
        writeLuma(folder / name, drawCode(encodeQrSegments(content), 2));
    };
    segments("numbers", {{QrMode::numeric, "0123456789"}});
    segments("capitals", {{QrMode::alphanumeric, "SLATE 2026"}});
    segments("kanji", {{QrMode::kanji, "\x93\x5f\xe4\xaa"}});
    segments("declared", {{QrMode::bytes, "\xC3\xA9", 26}});
    segments("latin", {{QrMode::bytes, "\xE9t\xE9"}});

    LumaImage damaged = drawCode(larger, 2);
    for (int y = 30; y < 40; ++y) {
        std::fill_n(damaged.row(y) + 30, 12, std::uint8_t{128});
    }
    writeLuma(folder / "damaged", damaged);
    LumaImage noise = drawCode(small, 2);
    for (std::size_t i = 0; i < noise.pixels.size(); ++i) {
        noise.pixels[i] = static_cast<std::uint8_t>(noise.pixels[i] ^ (i * 2654435761U >> 26U));
    }
    writeLuma(folder / "noise", noise);
    LumaImage cut = drawCode(small, 2);
    cut.pixels.resize(cut.pixels.size() * 2 / 3);
    writeLuma(folder / "cut", cut);
    writeLuma(folder / "blank", {20, 20, std::vector<std::uint8_t>(400, 255)});
}

} // namespace
} // namespace quillmark::test

int main(int argc, char **argv)
try {
    using namespace quillmark::test;
    if (argc != 2) {
        std::cerr << "usage: " << argv[0] << " FOLDER\n";
        return 2;
    }
    const std::filesystem::path folder = argv[1];
    for (const char *target : {"jpeg", "tiff", "unpack", "reader"}) {
        std::filesystem::create_directories(folder / target);
    }
    writeJpegs(folder / "jpeg");
    writeTiffCodings(folder / "tiff");
    writeTiffLayouts(folder / "tiff");
    writeStrips(folder / "unpack");
    writeCodes(folder / "reader");
    return 0;
} catch (const std::exception &error) {
    std::cerr << error.what() << '\n';
    return 1;
}
