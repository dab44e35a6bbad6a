// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// Looks at one file in a process of its own and prints what came of it and what it cost:
//   bomb-probe scan|picture FILE
// One line: "refused" or "read", the most memory held in MB (10^6 bytes), and the seconds that
// passed or were spent on all cores, whichever is less.

#include "bench/Measure.h"
#include "detection/FrameScan.h"
#include "detection/PictureDecoder.h"
#include "detection/SlateDetectionError.h"

#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace quillmark {
namespace {

/// So that a failing test does not take the machine with it.
void limitSeconds(rlim_t seconds)
{
    const rlimit limit{seconds, seconds};
    ::setrlimit(RLIMIT_CPU, &limit);
}

bool isRead(const std::filesystem::path &file, bool asPicture)
{
    try {
        if (asPicture) {
            decodePicture(file, {1000, 1000});
        } else {
            scanFrame(file);
        }
        return true;
    } catch (const SlateDetectionError &) {
        return false;
    }
}

void probe(const std::filesystem::path &file, bool asPicture)
{
    bool read = false;
    const double wall = bench::milliseconds([&] { read = isRead(file, asPicture); });
    const double spent = bench::processorMilliseconds();
    std::printf("%s %.1f %.2f\n", read ? "read" : "refused", bench::peakMegabytes(),
                std::min(wall, spent) / 1000);
}

} // namespace
} // namespace quillmark

int main(int argc, char **argv)
{
    if (argc != 3) {
        return 2;
    }
    quillmark::limitSeconds(40);
    quillmark::probe(argv[2], std::strcmp(argv[1], "picture") == 0);
    return 0;
}
