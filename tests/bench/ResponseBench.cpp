// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// How long an event waits for the main thread while the program works: another thread posts
// one every ten milliseconds, as a pointer that moves does. Prints one JSON object.
//   bench-response idle SECONDS    nothing happens
//   bench-response scan FOLDER     a folder is searched for a slate
//   bench-response run FOLDER      tags are written into its images, originals backed up
//   bench-response photo FRAME     the form opens with a picture of the slate

#include "app/ReferencePhoto.h"
#include "bench/BenchWindow.h"
#include "detection/SlateDetector.h"
#include "support/Samples.h"

#include <QEvent>
#include <QtQml/qqmlextensionplugin.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <thread>
#include <vector>

Q_IMPORT_QML_PLUGIN(QuillmarkPlugin)

namespace quillmark {
namespace {

using Clock = std::chrono::steady_clock;
using Session = IngestViewModel;

constexpr std::chrono::milliseconds beat{10};

class Beat : public QEvent
{
public:
    Beat() : QEvent(User) {}

    const Clock::time_point sent = Clock::now();
};

/// Takes the beats of a thread of its own, and notes how long each has waited.
class Pulse : public QObject
{
public:
    Pulse()
        : m_thread([this](const std::stop_token &stop) {
              auto next = Clock::now();
              while (!stop.stop_requested()) {
                  QCoreApplication::postEvent(this, new Beat);
                  next += beat;
                  std::this_thread::sleep_until(next);
              }
          })
    {}

    /// Ends the beats, waits for the last of them, and gives the milliseconds of each, ordered.
    std::vector<double> finish()
    {
        m_thread.request_stop();
        m_thread.join();
        QCoreApplication::sendPostedEvents(this);
        std::ranges::sort(m_waits);
        return m_waits;
    }

protected:
    bool event(QEvent *event) override
    {
        if (event->type() != QEvent::User) {
            return QObject::event(event);
        }
        const auto wait = Clock::now() - static_cast<const Beat *>(event)->sent;
        m_waits.push_back(std::chrono::duration<double, std::milli>(wait).count());
        return true;
    }

private:
    std::vector<double> m_waits;
    std::jthread m_thread; ///< last, so that it never sees an unfinished object
};

void scan(bench::BenchWindow &window, const std::filesystem::path &folder)
{
    window.session().viewModel().openFolder(folder);
    window.turnWhile<Session::Scanning>();
    if (!window.isIn<Session::DetectionFailed>()) {
        throw std::runtime_error("the scan did not look at every frame");
    }
}

void run(bench::BenchWindow &window, const std::filesystem::path &folder)
{
    IngestPlan plan;
    plan.folder = folder;
    plan.detection.payload = test::fullPayload();
    plan.rollFiles = SlateDetector::enumerateImages(folder, false);
    plan.detection.file = plan.rollFiles.front();
    window.setState(Session::Ready{plan});
    window.session().runIngest();
    window.turnWhile<Session::Writing>();
    if (!window.isIn<Session::Done>()) {
        throw std::runtime_error("the run failed");
    }
}

void photo(bench::BenchWindow &window, const std::filesystem::path &frame)
{
    window.setState(Session::ManualEntry{frame.parent_path(), frame});
    const auto *shown = window.window().findChild<ReferencePhoto *>();
    bench::BenchWindow::turnUntil([&] { return shown->isEmpty() || !shown->picture().isNull(); });
    if (shown->isEmpty()) {
        throw std::runtime_error("the photo cannot be read");
    }
}

void print(const std::vector<double> &waits)
{
    const auto count = static_cast<double>(waits.size());
    const auto percentile = static_cast<std::size_t>(std::ceil(0.99 * count)) - 1;
    std::printf("{\"events\": %zu, \"p99_ms\": %.2f, \"max_ms\": %.2f}\n", waits.size(),
                waits.at(percentile), waits.back());
}

void measure(const char *work, const char *argument)
{
    bench::BenchWindow window;
    Pulse pulse;
    if (std::strcmp(work, "idle") == 0) {
        bench::BenchWindow::turnFor(std::chrono::seconds(std::atoi(argument)));
    } else if (std::strcmp(work, "scan") == 0) {
        scan(window, argument);
    } else if (std::strcmp(work, "run") == 0) {
        run(window, argument);
    } else if (std::strcmp(work, "photo") == 0) {
        photo(window, argument);
    } else {
        throw std::runtime_error("no such work");
    }
    bench::BenchWindow::settle(); // what follows belongs to it: the screen with the result
    print(pulse.finish());
}

} // namespace
} // namespace quillmark

int main(int argc, char **argv)
{
    const quillmark::bench::BenchApplication<> application(argc, argv);
    if (argc != 3) {
        std::fputs("usage: bench-response idle|scan|run|photo ARGUMENT\n", stderr);
        return EXIT_FAILURE;
    }
    try {
        quillmark::measure(argv[1], argv[2]);
        return EXIT_SUCCESS;
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "bench-response: %s\n", failure.what());
        return EXIT_FAILURE;
    }
}
