// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// What looking for a slate on a TIFF frame costs. Prints one JSON object.
//   bench-tiff make FROM TO CODING PREDICTOR LAYOUT   the same picture in another coding (none,
//                                      lzw, deflate), in strips of about 64 KB (strips), in
//                                      one (single) or in tiles of 256 x 256 (tiles)
//   bench-tiff grey FILE SIDE          a square of grey noise of 8 bits without compression
//   bench-tiff stored FILE PAIRS       beside reading the file into a fresh buffer
//   bench-tiff packed FILE PAIRS       beside one thread of libtiff that decodes all of it
//   bench-tiff memory FILE             the peak of this process after one look

#include "bench/Measure.h"
#include "detection/FrameDecoder.h"
#include "detection/SlateDetector.h"
#include "support/Await.h"

#include <QCoreApplication>

#include <tiffio.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillmark {
namespace {

struct Closer {
    void operator()(TIFF *tiff) const { TIFFClose(tiff); }
};
using Tiff = std::unique_ptr<TIFF, Closer>;

Tiff open(const std::string &file, const char *mode)
{
    Tiff tiff(TIFFOpen(file.c_str(), mode));
    if (!tiff) {
        throw std::runtime_error("cannot open " + file);
    }
    return tiff;
}

void require(bool succeeded, const char *what)
{
    if (!succeeded) {
        throw std::runtime_error(what);
    }
}

template <typename Value>
Value tag(TIFF *tiff, std::uint32_t number)
{
    Value value{};
    require(TIFFGetFieldDefaulted(tiff, number, &value) == 1, "a tag is missing");
    return value;
}

struct Form {
    std::uint32_t width;
    std::uint32_t height;
    std::uint16_t bits;
    std::uint16_t channels;
    std::string coding;
    int predictor;
};

void describe(TIFF *tiff, const Form &form)
{
    const std::uint16_t coding = form.coding == "lzw"       ? COMPRESSION_LZW
                                 : form.coding == "deflate" ? COMPRESSION_ADOBE_DEFLATE
                                                            : COMPRESSION_NONE;
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, form.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, form.height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, form.bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, form.channels);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC,
                 form.channels >= 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, coding);
    if (coding != COMPRESSION_NONE) {
        TIFFSetField(tiff, TIFFTAG_PREDICTOR, form.predictor);
    }
}

/// From strips to tiles, a row of tiles at a time.
void writeTiles(TIFF *from, TIFF *to, const Form &form)
{
    constexpr std::uint32_t side = 256;
    TIFFSetField(to, TIFFTAG_TILEWIDTH, side);
    TIFFSetField(to, TIFFTAG_TILELENGTH, side);
    const std::size_t pixelBytes = std::size_t{form.bits} / 8 * form.channels;
    const std::size_t rowBytes = pixelBytes * form.width;
    std::vector<std::uint8_t> rows(rowBytes * side);
    std::vector<std::uint8_t> tile(pixelBytes * side * side);
    for (std::uint32_t top = 0; top < form.height; top += side) {
        const std::uint32_t count = std::min(side, form.height - top);
        for (std::uint32_t row = 0; row < count; ++row) {
            require(TIFFReadScanline(from, &rows[rowBytes * row], top + row) == 1, "cannot read");
        }
        for (std::uint32_t left = 0; left < form.width; left += side) {
            const std::size_t bytes = pixelBytes * std::min(side, form.width - left);
            for (std::uint32_t row = 0; row < count; ++row) {
                std::memcpy(&tile[pixelBytes * side * row],
                            &rows[rowBytes * row + pixelBytes * left], bytes);
            }
            require(TIFFWriteTile(to, tile.data(), left, top, 0, 0) >= 0, "cannot write");
        }
    }
}

void writeStrips(TIFF *from, TIFF *to, const Form &form, bool single)
{
    constexpr std::size_t stripBytes = 64U << 10U;
    const std::size_t rowBytes = std::size_t{form.bits} / 8 * form.channels * form.width;
    TIFFSetField(to, TIFFTAG_ROWSPERSTRIP,
                 single
                     ? form.height
                     : static_cast<std::uint32_t>(std::max<std::size_t>(stripBytes / rowBytes, 1)));
    std::vector<std::uint8_t> row(rowBytes);
    for (std::uint32_t y = 0; y < form.height; ++y) {
        require(TIFFReadScanline(from, row.data(), y) == 1, "cannot read");
        require(TIFFWriteScanline(to, row.data(), y) == 1, "cannot write");
    }
}

void make(const std::string &source, const std::string &target, const std::string &coding,
          int predictor, const std::string &layout)
{
    const Tiff from = open(source, "r");
    const Tiff to = open(target, "w");
    const Form form{tag<std::uint32_t>(from.get(), TIFFTAG_IMAGEWIDTH),
                    tag<std::uint32_t>(from.get(), TIFFTAG_IMAGELENGTH),
                    tag<std::uint16_t>(from.get(), TIFFTAG_BITSPERSAMPLE),
                    tag<std::uint16_t>(from.get(), TIFFTAG_SAMPLESPERPIXEL),
                    coding,
                    predictor};
    describe(to.get(), form);
    if (layout == "tiles") {
        writeTiles(from.get(), to.get(), form);
    } else {
        writeStrips(from.get(), to.get(), form, layout == "single");
    }
    std::printf("{\"mb\": %.1f}\n", static_cast<double>(std::filesystem::file_size(source)) / 1e6);
}

void makeGrey(const std::string &target, std::uint32_t side)
{
    const Tiff to = open(target, "w");
    describe(to.get(), {side, side, 8, 1, "none", 1});
    TIFFSetField(to.get(), TIFFTAG_ROWSPERSTRIP, 16);
    std::minstd_rand random(1);
    std::vector<std::uint8_t> row(side);
    for (std::uint32_t y = 0; y < side; ++y) {
        std::generate(row.begin(), row.end(),
                      [&] { return static_cast<std::uint8_t>(96 + random() % 64); });
        require(TIFFWriteScanline(to.get(), row.data(), y) == 1, "cannot write");
    }
    std::printf("{\"megapixels\": %.1f}\n", static_cast<double>(std::uint64_t{side} * side) / 1e6);
}

void readFile(const std::string &file)
{
    const auto bytes = static_cast<std::size_t>(std::filesystem::file_size(file));
    // Not a vector, which would clear it first.
    const auto buffer = std::make_unique_for_overwrite<char[]>(bytes);
    std::ifstream in;
    in.rdbuf()->pubsetbuf(nullptr, 0);
    in.open(file, std::ios::binary);
    require(bool(in.read(buffer.get(), static_cast<std::streamsize>(bytes))), "cannot read");
}

void decodeAll(const std::string &file, std::vector<std::uint8_t> &buffer)
{
    const Tiff tiff = open(file, "r");
    const bool tiled = TIFFIsTiled(tiff.get()) != 0;
    const tmsize_t bytes = tiled ? TIFFTileSize(tiff.get()) : TIFFStripSize(tiff.get());
    buffer.resize(static_cast<std::size_t>(bytes));
    const std::uint32_t count =
        tiled ? TIFFNumberOfTiles(tiff.get()) : TIFFNumberOfStrips(tiff.get());
    for (std::uint32_t i = 0; i < count; ++i) {
        const tmsize_t got = tiled ? TIFFReadEncodedTile(tiff.get(), i, buffer.data(), bytes)
                                   : TIFFReadEncodedStrip(tiff.get(), i, buffer.data(), bytes);
        require(got >= 0, "cannot decode");
    }
}

void look(const std::filesystem::path &file)
{
    test::await(SlateDetector::detect(file));
}

template <typename Floor>
void compare(const std::filesystem::path &file, int pairs, const Floor &floor)
{
    floor(); // the page cache is warm
    const bench::Comparison decoding = bench::compareInTurns(
        pairs, [&file] { decodeFrame(file); }, floor);
    const bench::Comparison looking = bench::compareInTurns(
        pairs, [&file] { look(file); }, floor);
    std::printf("{\"decode_ms\": %.1f, \"decode_ratio\": %.3f, \"detect_ms\": %.1f, "
                "\"floor_ms\": %.1f, \"ratio\": %.3f, \"cpu_ratio\": %.3f}\n",
                decoding.subject, decoding.ratio, looking.subject, looking.floor, looking.ratio,
                looking.processorRatio);
}

int run(const std::vector<std::string> &words)
{
    const std::string what = words.empty() ? "" : words[0];
    if (what == "make" && words.size() == 6) {
        make(words[1], words[2], words[3], std::stoi(words[4]), words[5]);
    } else if (what == "grey" && words.size() == 3) {
        makeGrey(words[1], static_cast<std::uint32_t>(std::stoul(words[2])));
    } else if (what == "stored" && words.size() == 3) {
        compare(words[1], std::stoi(words[2]), [&] { readFile(words[1]); });
    } else if (what == "packed" && words.size() == 3) {
        std::vector<std::uint8_t> buffer;
        compare(words[1], std::stoi(words[2]), [&] { decodeAll(words[1], buffer); });
    } else if (what == "memory" && words.size() == 2) {
        look(words[1]);
        std::printf("{\"peak_mb\": %.1f}\n", bench::peakMegabytes());
    } else {
        std::fputs("usage: bench-tiff make FROM TO CODING PREDICTOR LAYOUT | grey FILE SIDE"
                   " | stored FILE PAIRS | packed FILE PAIRS | memory FILE\n",
                   stderr);
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}

} // namespace
} // namespace quillmark

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    try {
        return quillmark::run({argv + 1, argv + argc});
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "bench-tiff: %s\n", failure.what());
    }
    return EXIT_FAILURE;
}
