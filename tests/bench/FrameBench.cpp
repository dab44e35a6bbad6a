// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// What decoding a frame costs, next to what it must cost at least: libjpeg-turbo decoding the
// luma of the same JPEG file from memory into a buffer that is there already.

#include "detection/FrameDecoder.h"
#include "support/TempDir.h"

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <functional>
#include <iostream>
#include <numeric>
#include <string>
#include <vector>

// jpeglib.h stands on cstdio without including it.
#include <jpeglib.h>

namespace {

double milliseconds(const std::function<void()> &work)
{
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
        .count();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

double peakMegabytes()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

/// An error ends the program, as libjpeg does by itself.
void decodeFloor(const std::string &bytes, std::vector<JSAMPLE> &pixels)
{
    jpeg_error_mgr errors{};
    jpeg_decompress_struct info{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&info);
    jpeg_mem_src(&info, reinterpret_cast<const unsigned char *>(bytes.data()), bytes.size());
    jpeg_read_header(&info, TRUE);
    info.out_color_space = JCS_GRAYSCALE;
    jpeg_start_decompress(&info);
    const std::size_t width = info.output_width;
    pixels.resize(width * info.output_height);
    std::vector<JSAMPROW> rows(info.output_height);
    for (std::size_t y = 0; y < rows.size(); ++y) {
        rows[y] = pixels.data() + y * width;
    }
    while (info.output_scanline < info.output_height) {
        jpeg_read_scanlines(&info, rows.data() + info.output_scanline,
                            info.output_height - info.output_scanline);
    }
    jpeg_finish_decompress(&info);
    jpeg_destroy_decompress(&info);
}

void measure(const std::filesystem::path &file, int pairs)
{
    // The first decoding comes before everything else, so that the peak is its own.
    const quillmark::LumaImage luma = quillmark::decodeFrame(file).luma;
    const double peak = peakMegabytes();

    const std::string bytes = quillmark::test::readFile(file);
    std::vector<JSAMPLE> pixels;
    decodeFloor(bytes, pixels);
    std::vector<double> decoding;
    std::vector<double> floor;
    std::vector<double> ratios;
    for (int i = 0; i < pairs; ++i) {
        decoding.push_back(milliseconds([&] { quillmark::decodeFrame(file); }));
        floor.push_back(milliseconds([&] { decodeFloor(bytes, pixels); }));
        ratios.push_back(decoding.back() / floor.back());
    }
    std::cout << "width " << luma.width << "\nheight " << luma.height << "\npairs " << pairs
              << "\ndecode_ms " << median(decoding) << "\nfloor_ms " << median(floor) << "\nratio "
              << median(ratios) << "\npeak_rss_mb " << peak << '\n';
}

} // namespace

int main(int argc, char **argv)
{
    const int pairs = argc == 3 ? std::atoi(argv[2]) : 15;
    if (argc < 2 || argc > 3 || pairs < 1) {
        std::cerr << "usage: bench-frame JPEG-FILE [PAIRS]\n";
        return 2;
    }
    try {
        measure(argv[1], pairs);
    } catch (const std::exception &exception) {
        std::cerr << exception.what() << '\n';
        return 1;
    }
    return 0;
}
