// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "Commands.h"

#include "support/Frames.h"
#include "support/ImageFiles.h"

#include <array>
#include <string>

namespace quillmark::kills {
namespace {

using test::JpegColour;
using test::JpegOptions;
using test::RasterImage;
using test::TiffCompression;
using test::TiffOptions;

constexpr int frames = 36;
constexpr int slate = 7;
constexpr int firstInFolder = 33;

/// Slopes with a little noise, which compress as scans do; each seed has its own.
RasterImage picture(int width, int height, std::uint32_t seed)
{
    RasterImage image{width, height, 3, {}};
    image.samples.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3);
    std::uint32_t noise = seed * 2654435761U + 1; // a linear congruential generator
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            for (int channel = 0; channel < 3; ++channel) {
                noise = noise * 1664525U + 1013904223U;
                const int slope = x * (12 + channel) + y * 17 + static_cast<int>(seed) * 911;
                image.samples.push_back(
                    static_cast<std::uint16_t>((slope + static_cast<int>(noise >> 20U)) % 65536));
            }
        }
    }
    return image;
}

JpegOptions jpegKind(int number)
{
    const std::array kinds{
        JpegOptions{},
        JpegOptions{.progressive = true},
        JpegOptions{.quality = 98, .orientation = 6},
        JpegOptions{.colour = JpegColour::grey},
        JpegOptions{.colour = JpegColour::cmyk},
        JpegOptions{.chromaSubsampling = 1, .restartRows = 2},
    };
    return kinds[static_cast<std::size_t>(number) % kinds.size()];
}

TiffOptions tiffKind(int number)
{
    const std::array kinds{
        TiffOptions{},
        TiffOptions{.bits = 16},
        TiffOptions{.compression = TiffCompression::lzw,
                    .predictor = test::TiffPredictor::horizontal},
        TiffOptions{.bits = 16, .compression = TiffCompression::deflate, .rowsPerStrip = 0},
        TiffOptions{.bigEndian = true, .orientation = 8},
        TiffOptions{.compression = TiffCompression::packBits, .planarSeparate = true},
    };
    return kinds[static_cast<std::size_t>(number) % kinds.size()];
}

/// The name of a frame, its extension among it. Every third asks for care.
std::string nameOf(int number, bool tiff)
{
    const std::array odd{"-overwrite_original",
                         "line\nbreak",
                         "caf\xe9 not UTF-8",
                         "fog 🌫",
                         "a=b <c> %f $d",
                         "quote\"s and 'these'",
                         "@list",
                         "عكس",
                         "two  words "};
    const std::string folder = number < firstInFolder ? "" : "album.jpg/";
    const std::string digits = (number < 10 ? "0" : "") + std::to_string(number);
    if (number % 3 != 0) {
        return folder + "frame-" + digits + (tiff ? ".tif" : ".jpg");
    }
    const auto turn = static_cast<std::size_t>(number / 3);
    return folder + odd[turn % odd.size()] + (turn < odd.size() ? "" : " " + digits) +
           (tiff ? ".TIFF" : ".Jpeg");
}

} // namespace

void makeRoll(const std::filesystem::path &folder, const QByteArray &payload)
{
    std::filesystem::create_directories(folder / "album.jpg");
    for (int number = 0; number < frames; ++number) {
        const bool tiff = number % 2 == 1;
        const std::filesystem::path file = folder / nameOf(number, tiff);
        if (number == slate) {
            test::writeFrame(file, {payload});
            continue;
        }
        const bool medium = number % 4 >= 2;
        const RasterImage image =
            picture(medium ? 900 : 240, medium ? 600 : 160, static_cast<std::uint32_t>(number));
        if (tiff) {
            test::writeTiff(file, image, tiffKind(number / 2));
        } else {
            test::writeJpeg(file, image, jpegKind(number / 2));
        }
    }
}

} // namespace quillmark::kills
