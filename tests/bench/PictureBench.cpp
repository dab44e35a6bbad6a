// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// What a picture for looking at costs, once. Prints one JSON object.
//   bench-picture FILE SIDE   no larger than SIDE pixels each way

#include "bench/Measure.h"
#include "detection/PictureDecoder.h"

#include <cstdio>
#include <cstdlib>
#include <exception>

int main(int argc, char **argv)
{
    const int side = argc == 3 ? std::atoi(argv[2]) : 0;
    if (side <= 0) {
        std::fputs("usage: bench-picture FILE SIDE\n", stderr);
        return EXIT_FAILURE;
    }
    try {
        const double before = quillmark::bench::peakMegabytes();
        const double took = quillmark::bench::milliseconds([&] {
            quillmark::decodePicture(argv[1], {side, side});
        });
        std::printf("{\"picture_ms\": %.1f, \"peak_mb\": %.1f, \"peak_before_mb\": %.1f}\n", took,
                    quillmark::bench::peakMegabytes(), before);
        return EXIT_SUCCESS;
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "bench-picture: %s\n", failure.what());
    }
    return EXIT_FAILURE;
}
