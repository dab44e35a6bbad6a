// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// What looking for a slate on one frame costs. Prints one JSON object.
//   bench-scan time JPEG PAIRS   beside libjpeg-turbo's decoding of its luma alone
//   bench-scan memory FILE       the peak of this process after one look

#include "bench/LumaFloor.h"
#include "bench/Measure.h"
#include "detection/FrameDecoder.h"
#include "detection/SlateDetector.h"
#include "support/Await.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>

namespace quillmark {
namespace {

void look(const std::filesystem::path &file)
{
    test::await(SlateDetector::detect(file));
}

void printTime(const std::filesystem::path &file, int pairs)
{
    bench::LumaFloor luma(file);
    const auto floor = [&luma] { luma.decode(); };
    const bench::Comparison decoding = bench::compareInTurns(
        pairs, [&file] { decodeFrame(file); }, floor);
    const bench::Comparison looking = bench::compareInTurns(
        pairs, [&file] { look(file); }, floor);
    std::printf("{\"decode_ms\": %.1f, \"decode_ratio\": %.2f, "
                "\"detect_ms\": %.1f, \"luma_ms\": %.1f, \"ratio\": %.2f, \"cpu_ratio\": %.2f}\n",
                decoding.subject, decoding.ratio, looking.subject, looking.floor, looking.ratio,
                looking.processorRatio);
}

void printMemory(const std::filesystem::path &file)
{
    look(file);
    std::printf("{\"peak_mb\": %.1f}\n", bench::peakMegabytes());
}

} // namespace
} // namespace quillmark

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    try {
        if (argc == 4 && std::strcmp(argv[1], "time") == 0) {
            quillmark::printTime(argv[2], std::atoi(argv[3]));
            return EXIT_SUCCESS;
        }
        if (argc == 3 && std::strcmp(argv[1], "memory") == 0) {
            quillmark::printMemory(argv[2]);
            return EXIT_SUCCESS;
        }
        std::fputs("usage: bench-scan time JPEG PAIRS | memory FILE\n", stderr);
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "bench-scan: %s\n", failure.what());
    }
    return EXIT_FAILURE;
}
