// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/zoo/Bombs.h"
#include "detection/zoo/RawFrames.h"
#include "support/TempDir.h"

#include <string_view>
#include <utility>

namespace quillmark::test {
namespace {

using namespace std::string_view_literals;
using Path = std::filesystem::path;

/// Marker codes of JPEG: ITU-T T.81, table B.1.
constexpr std::string_view startOfScan = "\xFF\xDA";
constexpr std::string_view endOfImage = "\xFF\xD9";

std::string jpegOf(const JpegOptions &options)
{
    const TempDir folder;
    writeJpeg(folder / "a", RasterImage{16, 16, 3, std::vector<std::uint16_t>(16 * 16 * 3, 50000)},
              options);
    return readFile(folder / "a");
}

/// A small JPEG file that says to be of another size.
std::string claiming(int width, int height, const JpegOptions &options)
{
    std::string bytes = jpegOf(options);
    std::size_t frame = std::string::npos;
    for (const std::string_view marker :
         {"\xFF\xC0"sv, "\xFF\xC1"sv, "\xFF\xC2"sv, "\xFF\xC9"sv, "\xFF\xCA"sv}) {
        frame = std::min(frame, bytes.find(marker));
    }
    bytes.at(frame + 5) = static_cast<char>(height >> 8);
    bytes.at(frame + 6) = static_cast<char>(height & 0xFF);
    bytes.at(frame + 7) = static_cast<char>(width >> 8);
    bytes.at(frame + 8) = static_cast<char>(width & 0xFF);
    return bytes;
}

Bomb claim(std::string name, const std::string &how, int width, int height,
           const JpegOptions &options, double megapixels = 0)
{
    return {std::move(name), "JPEG, " + how,
            [=](const Path &file) { writeBytes(file, claiming(width, height, options)); },
            megapixels};
}

/// The last scan, without its codes, so many times more.
Bomb endlessScans(std::string name, const std::string &how, int width, int height,
                  const JpegOptions &options, double megapixels)
{
    return {std::move(name), "JPEG, " + how,
            [=](const Path &file) {
                std::string bytes = claiming(width, height, options);
                const std::size_t last = bytes.rfind(startOfScan);
                const auto length = static_cast<unsigned char>(bytes.at(last + 3));
                const std::string scan = bytes.substr(last, 2 + std::size_t{length});
                bytes.resize(bytes.size() - endOfImage.size());
                for (int i = 0; i < 60000; ++i) {
                    bytes += scan;
                }
                writeBytes(file, bytes);
            },
            megapixels};
}

/// A file with so many zeros at a place, which are a hole that takes no room on the disk.
void writeWithHole(const Path &file, std::string_view before, std::uint64_t zeros)
{
    writeBytes(file, before);
    std::filesystem::resize_file(file, before.size() + zeros);
}

constexpr std::uint64_t endless = std::uint64_t{64} << 30U;

Bomb holeBehind(std::string name, const std::string &how, std::string (*head)(), double megapixels)
{
    return {std::move(name), "JPEG, " + how,
            [head](const Path &file) { writeWithHole(file, head(), endless); }, megapixels};
}

/// Each block as short as can be, and a tenth of them there.
Bomb gigapixel()
{
    return {"gigapixel", "JPEG, a gigapixel, of which a tenth is there",
            [](const Path &file) {
                std::string bytes = claiming(65500, 15000, {.colour = JpegColour::grey});
                bytes.resize(bytes.size() - endOfImage.size());
                writeBytes(file, bytes + std::string(1'100'000, '\0'));
            },
            982.5};
}

std::string firstScan()
{
    const std::string bytes = jpegOf({.progressive = true});
    const std::size_t scan = bytes.find(startOfScan);
    return bytes.substr(0, bytes.find(startOfScan, scan + 2));
}

std::string beginning()
{
    return jpegOf({}).substr(0, 20);
}

} // namespace

std::vector<Bomb> jpegBombs()
{
    return {
        claim("largest", "65535x65535 declared", 65535, 65535, {}),
        claim("large", "65500x15000 declared", 65500, 15000, {}),
        claim("largeProgressive", "65500x15000 declared, progressive", 65500, 15000,
              {.progressive = true}),
        gigapixel(),
        claim("onTrust", "8000x8000 declared", 8000, 8000, {}, 64),
        claim("onTrustArithmetic", "8000x8000 declared, arithmetic codes", 8000, 8000,
              {.arithmetic = true}, 64),
        claim("onTrustRestart", "8000x8000 declared, a restart marker after each block", 8000, 8000,
              {.restartBlocks = 1}, 64),
        claim("coefficients", "6500x6500 declared, progressive 4:4:4", 6500, 6500,
              {.progressive = true, .chromaSubsampling = 1}),
        claim("coefficientsArithmetic", "6500x6500 declared, progressive, arithmetic codes", 6500,
              6500, {.progressive = true, .chromaSubsampling = 1, .arithmetic = true}),
        endlessScans("scans", "60000 scans of 2500x2500 pixels", 2500, 2500,
                     {.progressive = true, .chromaSubsampling = 1}, 6.25),
        endlessScans("scansGrey", "60000 scans of 4000x4000 pixels in grey", 4000, 4000,
                     {.progressive = true, .colour = JpegColour::grey}, 16),
        endlessScans("scansArithmetic", "60000 scans in arithmetic codes", 2500, 2500,
                     {.progressive = true, .chromaSubsampling = 1, .arithmetic = true}, 6.25),
        endlessScans("scansRestart", "60000 scans with a restart marker after each block", 2500,
                     2500, {.progressive = true, .restartBlocks = 1}, 6.25),
        holeBehind("zerosBeforeFrame", "64 GB of zeros in its head", beginning, 0),
        holeBehind("zerosBehindScan", "64 GB of zeros behind its first scan", firstScan, 0.0003),
    };
}

} // namespace quillmark::test
