// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// What the spinner costs: the processor time that the whole process has while the scanning
// screen is shown and nothing else goes on, or for comparison the idle one. Prints one JSON
// object.
//   bench-spinner scanning|idle SECONDS

#include "bench/BenchWindow.h"

#include <QtQml/qqmlextensionplugin.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <string_view>

Q_IMPORT_QML_PLUGIN(QuillmarkPlugin)

namespace quillmark {
namespace {

/// Seconds of processor time that this process has had, on all cores.
double processorSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

void run(bool turning, int seconds)
{
    bench::BenchWindow window;
    if (turning) {
        window.setState(IngestViewModel::Scanning{"/rolls/1"});
    }
    bench::BenchWindow::settle();
    const double before = processorSeconds();
    bench::BenchWindow::turnFor(std::chrono::seconds(seconds));
    std::printf(R"({"core_percent": %.2f})"
                "\n",
                100 * (processorSeconds() - before) / seconds);
}

} // namespace
} // namespace quillmark

int main(int argc, char **argv)
{
    const quillmark::bench::BenchApplication application(argc, argv);
    const int seconds = argc == 3 ? std::atoi(argv[2]) : 0;
    if (seconds <= 0) {
        std::fputs("usage: bench-spinner scanning|idle SECONDS\n", stderr);
        return EXIT_FAILURE;
    }
    try {
        quillmark::run(std::string_view(argv[1]) == "scanning", seconds);
        return EXIT_SUCCESS;
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "bench-spinner: %s\n", failure.what());
        return EXIT_FAILURE;
    }
}
