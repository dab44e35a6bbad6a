// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/ImageFiles.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <stdexcept>

// jpeglib.h stands on cstdio without including it.
#include <jpeglib.h>

namespace quillmark::test {
namespace {

[[noreturn]] void throwJpegError(j_common_ptr info)
{
    std::array<char, JMSG_LENGTH_MAX> text{};
    info->err->format_message(info, text.data());
    throw std::runtime_error(text.data());
}

J_COLOR_SPACE storedSpace(JpegColour colour, const RasterImage &image)
{
    switch (colour) {
    case JpegColour::yCbCr:
        return image.channels == 1 ? JCS_GRAYSCALE : JCS_YCbCr;
    case JpegColour::grey:
        return JCS_GRAYSCALE;
    case JpegColour::rgb:
        return JCS_RGB;
    case JpegColour::cmyk:
        return JCS_CMYK;
    case JpegColour::ycck:
        return JCS_YCCK;
    }
    throw std::logic_error("no such colour space");
}

JSAMPLE eightBits(std::uint16_t sample)
{
    return static_cast<JSAMPLE>((sample * 255 + 32767) / 65535);
}

/// Red, green and blue to four inks, as much of the black ink as goes.
std::array<JSAMPLE, 4> inks(std::array<JSAMPLE, 3> rgb, bool inverted)
{
    const int white = std::max({rgb[0], rgb[1], rgb[2]});
    std::array<JSAMPLE, 4> result{};
    for (std::size_t i = 0; i < 3; ++i) {
        result[i] = static_cast<JSAMPLE>(white == 0 ? 0 : 255 - 255 * rgb[i] / white);
    }
    result[3] = static_cast<JSAMPLE>(255 - white);
    if (inverted) {
        for (JSAMPLE &ink : result) {
            ink = static_cast<JSAMPLE>(255 - ink);
        }
    }
    return result;
}

std::vector<JSAMPLE> rowOf(const RasterImage &image, int y, int components, bool inverted)
{
    std::vector<JSAMPLE> row;
    row.reserve(static_cast<std::size_t>(image.width) * static_cast<std::size_t>(components));
    for (int x = 0; x < image.width; ++x) {
        std::array<JSAMPLE, 3> rgb{};
        for (std::size_t i = 0; i < 3; ++i) {
            rgb[i] = eightBits(image.at(x, y, image.channels == 1 ? 0 : static_cast<int>(i)));
        }
        if (components == 4) {
            const std::array<JSAMPLE, 4> cmyk = inks(rgb, inverted);
            row.insert(row.end(), cmyk.begin(), cmyk.end());
        } else {
            row.insert(row.end(), rgb.begin(), rgb.begin() + components);
        }
    }
    return row;
}

std::vector<jpeg_scan_info> oneScanEach(int components)
{
    std::vector<jpeg_scan_info> scans;
    for (int i = 0; i < components; ++i) {
        scans.push_back({1, {i, 0, 0, 0}, 0, DCTSIZE2 - 1, 0, 0});
    }
    return scans;
}

void appendLittleEndian(std::string &out, std::uint32_t value, int bytes)
{
    for (int i = 0; i < bytes; ++i) {
        out.push_back(static_cast<char>(value >> (8 * i) & 0xFFU));
    }
}

} // namespace

std::string exifOrientationBlock(std::uint32_t value, std::uint16_t type)
{
    std::string block("Exif\0\0II*\0\10\0\0\0\1\0", 16);
    appendLittleEndian(block, 0x0112, 2);
    appendLittleEndian(block, type, 2);
    appendLittleEndian(block, 1, 4);
    appendLittleEndian(block, value, 4);
    appendLittleEndian(block, 0, 4);
    return block;
}

void writeJpeg(const std::filesystem::path &file, const RasterImage &image,
               const JpegOptions &options)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> out(std::fopen(file.c_str(), "wb"),
                                                               std::fclose);
    if (!out) {
        throw std::runtime_error("cannot write " + file.string());
    }

    jpeg_error_mgr errors{};
    jpeg_compress_struct info{};
    info.err = jpeg_std_error(&errors);
    errors.error_exit = throwJpegError;
    jpeg_create_compress(&info);
    const std::unique_ptr<jpeg_compress_struct, void (*)(j_compress_ptr)> owner(
        &info, jpeg_destroy_compress);
    jpeg_stdio_dest(&info, out.get());

    const J_COLOR_SPACE stored = storedSpace(options.colour, image);
    const bool inked = stored == JCS_CMYK || stored == JCS_YCCK;
    info.image_width = static_cast<JDIMENSION>(image.width);
    info.image_height = static_cast<JDIMENSION>(image.height);
    info.input_components = inked ? 4 : stored == JCS_GRAYSCALE && image.channels == 1 ? 1 : 3;
    info.in_color_space = inked ? JCS_CMYK : info.input_components == 1 ? JCS_GRAYSCALE : JCS_RGB;
    jpeg_set_defaults(&info);
    jpeg_set_colorspace(&info, stored);
    jpeg_set_quality(&info, options.quality, options.deepTables ? FALSE : TRUE);
    if (stored == JCS_YCbCr || stored == JCS_YCCK) {
        for (const int i : {0, 3}) {
            if (i < info.num_components) {
                info.comp_info[i].h_samp_factor = options.chromaSubsampling;
                info.comp_info[i].v_samp_factor =
                    options.chromaSubsamplingDown.value_or(options.chromaSubsampling);
            }
        }
    }
    if (!options.adobeMarker) {
        info.write_Adobe_marker = FALSE;
    }
    info.restart_in_rows = options.restartRows;
    info.restart_interval = options.restartBlocks;
    info.arith_code = options.arithmetic ? TRUE : FALSE;
    info.optimize_coding = options.optimised ? TRUE : FALSE;
    const std::vector<jpeg_scan_info> scans = oneScanEach(info.num_components);
    if (options.separateScans) {
        info.scan_info = scans.data();
        info.num_scans = static_cast<int>(scans.size());
    }
    if (options.progressive) {
        jpeg_simple_progression(&info);
    }
    jpeg_start_compress(&info, TRUE);

    const std::string app1 =
        options.app1.empty() && options.orientation != 1
            ? exifOrientationBlock(static_cast<std::uint32_t>(options.orientation))
            : options.app1;
    if (!app1.empty()) {
        jpeg_write_marker(&info, JPEG_APP0 + 1, reinterpret_cast<const JOCTET *>(app1.data()),
                          static_cast<unsigned>(app1.size()));
    }
    if (!options.icc.empty()) {
        jpeg_write_icc_profile(&info, reinterpret_cast<const JOCTET *>(options.icc.data()),
                               static_cast<unsigned>(options.icc.size()));
    }
    for (int y = 0; y < image.height; ++y) {
        std::vector<JSAMPLE> row = rowOf(image, y, info.input_components, options.adobeMarker);
        JSAMPROW rows = row.data();
        jpeg_write_scanlines(&info, &rows, 1);
    }
    jpeg_finish_compress(&info);
    if (std::fflush(out.get()) != 0) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

} // namespace quillmark::test
