// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// What the spinner costs: the processor time that the whole process has while the scanning or
// the writing screen is shown and nothing else goes on, or for comparison the idle one. Prints
// one JSON object.
//   bench-spinner scanning|writing|idle SECONDS

#include "bench/BenchWindow.h"
#include "support/Samples.h"

#include <QtQml/qqmlextensionplugin.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

Q_IMPORT_QML_PLUGIN(QuillmarkPlugin)

namespace quillmark {
namespace {

using Session = IngestViewModel;

/// Seconds of processor time that this process has had, on all cores.
double processorSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

Session::State stateOf(const std::string &screen)
{
    const IngestPlan plan{.folder = "/rolls/1",
                          .detection = {"/rolls/1/01.jpg", test::fullPayload(), QString()},
                          .rollFiles = std::vector<std::filesystem::path>(36, "/rolls/1/01.jpg"),
                          .backupMode = BackupMode::backupOriginals};
    const std::map<std::string, Session::State> states{{"idle", Session::Idle{}},
                                                       {"scanning", Session::Scanning{plan.folder}},
                                                       {"writing", Session::Writing{plan}}};
    return states.at(screen);
}

void run(const std::string &screen, int seconds)
{
    bench::BenchWindow window;
    window.setState(stateOf(screen));
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
        std::fputs("usage: bench-spinner scanning|writing|idle SECONDS\n", stderr);
        return EXIT_FAILURE;
    }
    try {
        quillmark::run(argv[1], seconds);
        return EXIT_SUCCESS;
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "bench-spinner: %s\n", failure.what());
        return EXIT_FAILURE;
    }
}
