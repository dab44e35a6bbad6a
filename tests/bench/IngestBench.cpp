// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// What a person waits for, and what is left of it. Prints one JSON object.
//   bench-ingest plan FOLDER PAIRS    from the drop of a folder whose first frame, a JPEG, is
//                                     the slate to the plan on the screen: of the first drop, and
//                                     of later ones beside the decoding of that frame's luma
//   bench-ingest again FOLDER TIMES   memory after each of so many ingests

#include "bench/BenchWindow.h"
#include "bench/LumaFloor.h"
#include "bench/Measure.h"
#include "detection/SlateDetector.h"

#include <QtQml/qqmlextensionplugin.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string_view>
#include <vector>

Q_IMPORT_QML_PLUGIN(QuillmarkPlugin)

namespace quillmark {
namespace {

namespace fs = std::filesystem;
using Session = IngestViewModel;

template <typename State>
void expect(bench::BenchWindow &window)
{
    if (!window.isIn<State>()) {
        throw std::runtime_error("the roll went another way");
    }
}

void leave(bench::BenchWindow &window)
{
    window.setState(Session::Idle{});
    bench::BenchWindow::settle();
}

/// Returns when a frame with the plan has been shown.
void openPlan(bench::BenchWindow &window, const fs::path &folder)
{
    QEventLoop loop;
    QObject::connect(&window.window(), &QQuickWindow::frameSwapped, &loop, [&] {
        if (!window.isIn<Session::Scanning>()) {
            loop.quit();
        }
    });
    window.session().viewModel().openFolder(folder);
    loop.exec();
    expect<Session::Ready>(window);
}

void plan(const fs::path &folder, int pairs)
{
    bench::LumaFloor luma(SlateDetector::enumerateImages(folder, false).at(0));
    bench::BenchWindow window;
    const double first = bench::milliseconds([&] { openPlan(window, folder); });
    const bench::Comparison result = bench::compareInTurns(
        pairs, [&] { openPlan(window, folder); }, [&] { luma.decode(); }, [&] { leave(window); });
    std::printf("{\"first_ms\": %.2f, \"pairs\": [", first);
    for (const char *comma = ""; const auto &[plan, floor] : result.pairs) {
        std::printf("%s[%.2f, %.2f]", comma, plan, floor);
        comma = ", ";
    }
    std::printf("]}\n");
}

void ingest(bench::BenchWindow &window, const fs::path &folder)
{
    openPlan(window, folder);
    window.session().runIngest();
    window.turnWhile<Session::Writing>();
    expect<Session::Done>(window);
    bench::BenchWindow::settle();
    leave(window);
}

void again(const fs::path &folder, int times)
{
    bench::BenchWindow window;
    std::printf("{\"after_mb\": [");
    for (int i = 0; i < times; ++i) {
        ingest(window, folder);
        std::printf("%s%.2f", i == 0 ? "" : ", ", bench::residentMegabytes());
    }
    std::printf("]}\n");
}

} // namespace
} // namespace quillmark

int main(int argc, char **argv)
{
    const quillmark::bench::BenchApplication<> application(argc, argv);
    const int times = argc == 4 ? std::atoi(argv[3]) : 0;
    const std::string_view figure = argc == 4 ? argv[1] : "";
    try {
        if (figure == "plan" && times > 0) {
            quillmark::plan(argv[2], times);
            return EXIT_SUCCESS;
        }
        if (figure == "again" && times > 0) {
            quillmark::again(argv[2], times);
            return EXIT_SUCCESS;
        }
        std::fputs("usage: bench-ingest plan|again FOLDER TIMES\n", stderr);
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "bench-ingest: %s\n", failure.what());
    }
    return EXIT_FAILURE;
}
