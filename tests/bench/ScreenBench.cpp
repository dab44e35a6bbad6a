// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// How long the main thread is busy with a switch from the idle screen to another: from the
// change of the session's state to the end of the frame that shows it. The first time
// includes loading the screen. Prints one JSON object.
//   bench-screen SCREEN TIMES FRAME   FRAME is the picture that the form shows

#include "bench/BenchWindow.h"
#include "bench/Measure.h"
#include "support/Samples.h"

#include <QtQml/qqmlextensionplugin.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

Q_IMPORT_QML_PLUGIN(QuillmarkPlugin)

namespace quillmark {
namespace {

using Clock = std::chrono::steady_clock;
using Session = IngestViewModel;

struct Busy {
    double wall;      ///< milliseconds that the change of state and the events after it took
    double processor; ///< milliseconds of processor time that it was given
};

double processorMilliseconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

/// Measures how long events take, those aside that arrive while another one is handled.
class MeasuringApplication : public QApplication
{
public:
    using QApplication::QApplication;

    void reset() { m_busy = {}; }
    /// The time that events have taken since, the one that is being handled included.
    Clock::duration busy() const
    {
        return m_depth > 0 ? m_busy + (Clock::now() - m_start) : m_busy;
    }

    bool notify(QObject *receiver, QEvent *event) override
    {
        if (m_depth++ == 0) {
            m_start = Clock::now();
        }
        const bool handled = QApplication::notify(receiver, event);
        if (--m_depth == 0) {
            m_busy += Clock::now() - m_start;
        }
        return handled;
    }

private:
    int m_depth = 0;
    Clock::time_point m_start;
    Clock::duration m_busy{};
};

/// The main thread's share of one switch.
Busy switchTo(bench::BenchWindow &window, MeasuringApplication &application, Session::State state)
{
    QEventLoop loop;
    Clock::duration busy{};
    double processor = 0;
    QObject::connect(&window.window(), &QQuickWindow::frameSwapped, &loop, [&] {
        busy = application.busy();
        processor = processorMilliseconds();
        loop.quit();
    });
    application.reset();
    const double processorBefore = processorMilliseconds();
    const double change = bench::milliseconds([&] { window.setState(std::move(state)); });
    loop.exec();
    return {change + std::chrono::duration<double, std::milli>(busy).count(),
            processor - processorBefore};
}

std::map<std::string, Session::State> states(const std::filesystem::path &frame)
{
    const std::filesystem::path folder = frame.parent_path();
    const IngestPlan plan{.folder = folder,
                          .detection = {frame, test::fullPayload(), QString()},
                          .rollFiles = std::vector<std::filesystem::path>(36, frame),
                          .backupMode = BackupMode::backupOriginals};
    return {{"scanning", Session::Scanning{folder}},
            {"ready", Session::Ready{plan}},
            {"detectionFailed", Session::DetectionFailed{folder, 36}},
            {"manualEntry", Session::ManualEntry{folder, std::nullopt}},
            {"manualEntryWithPhoto", Session::ManualEntry{folder, frame}},
            {"writing", Session::Writing{plan}},
            {"done", Session::Done{{plan, plan.rollFiles, plan.rollFiles}}},
            {"error", Session::Error{QStringLiteral("exiftool exited with code 1\n\nno room")}}};
}

void print(const char *name, const Busy &busy, const char *end)
{
    std::printf(R"("%s_ms": %.2f, "%s_processor_ms": %.2f%s)", name, busy.wall, name,
                busy.processor, end);
}

Busy medians(const std::vector<Busy> &all)
{
    std::vector<double> walls;
    std::vector<double> processors;
    for (const Busy &each : all) {
        walls.push_back(each.wall);
        processors.push_back(each.processor);
    }
    return {bench::median(walls), bench::median(processors)};
}

int run(MeasuringApplication &application, const std::string &name, int times,
        const std::filesystem::path &frame)
{
    bench::BenchWindow window;
    const Session::State state = states(frame).at(name);
    const Busy first = switchTo(window, application, state);
    std::vector<Busy> there;
    std::vector<Busy> back;
    for (int i = 0; i < times; ++i) {
        bench::BenchWindow::settle();
        back.push_back(switchTo(window, application, Session::Idle{}));
        bench::BenchWindow::settle();
        there.push_back(switchTo(window, application, state));
    }
    std::printf("{");
    print("first", first, ", ");
    print("again", medians(there), ", ");
    print("back", medians(back), "}\n");
    return EXIT_SUCCESS;
}

} // namespace
} // namespace quillmark

int main(int argc, char **argv)
{
    quillmark::bench::BenchApplication<quillmark::MeasuringApplication> application(argc, argv);
    if (argc != 4 || std::atoi(argv[2]) <= 0) {
        std::fputs("usage: bench-screen SCREEN TIMES FRAME\n", stderr);
        return EXIT_FAILURE;
    }
    try {
        return quillmark::run(*application, argv[1], std::atoi(argv[2]), argv[3]);
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "bench-screen: %s\n", failure.what());
        return EXIT_FAILURE;
    }
}
