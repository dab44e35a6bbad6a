// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// What the session's run costs over the images of a folder, without backups. Prints one JSON
// object.
//   bench-run time FOLDER PAIRS   beside the bare exiftool with the same arguments
//   bench-run limit FOLDER        with as many of its images as can be given to one exiftool,
//                                 and, several times, with one more

#include "bench/Measure.h"
#include "embedding/ChildProcess.h"
#include "embedding/EmbedRun.h"
#include "embedding/Exiftool.h"
#include "ingest/IngestViewModel.h"
#include "support/Await.h"
#include "support/Samples.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace quillmark {
namespace {

void makeReady(IngestViewModel &session, const IngestPlan &plan)
{
    session.setBackupMode(BackupMode::none);
    session.setState(IngestViewModel::Ready{plan});
}

void run(IngestViewModel &session)
{
    test::await(session.runIngest(), std::chrono::minutes(10));
}

void runToTheEnd(const IngestPlan &plan)
{
    IngestViewModel session;
    makeReady(session, plan);
    run(session);
    if (!std::holds_alternative<IngestViewModel::Done>(session.state())) {
        throw std::runtime_error("the run failed");
    }
}

/// How long the refusal of a plan takes, in milliseconds.
double timeRefusal(const IngestPlan &plan)
{
    IngestViewModel session;
    makeReady(session, plan);
    const double time = bench::milliseconds([&session] { run(session); });
    const auto *const error = std::get_if<IngestViewModel::Error>(&session.state());
    if (error == nullptr || !error->text.contains(QStringLiteral("are too long together"))) {
        throw std::runtime_error("one file more was not refused");
    }
    return time;
}

std::vector<std::string> arguments(const IngestPlan &plan)
{
    return embedArguments(
        *Exiftool::configURL(),
        Exiftool::tagArguments(plan.detection.payload, ownGeneratorVersion.toString()),
        absoluteNames(plan.rollFiles));
}

void runBare(const IngestPlan &plan)
{
    if (runChild(*Exiftool::locate(), arguments(plan)).status != 0) {
        throw std::runtime_error("exiftool failed");
    }
}

IngestPlan planOf(const std::filesystem::path &folder)
{
    IngestPlan plan;
    plan.folder = folder;
    plan.detection.payload = test::fullPayload();
    plan.rollFiles = SlateDetector::enumerateImages(folder, false);
    plan.backupMode = BackupMode::none;
    return plan;
}

void printTime(const std::filesystem::path &folder, int pairs)
{
    const IngestPlan plan = planOf(folder);
    runBare(plan); // both find the files as a run leaves them
    const bench::Comparison result = bench::compareInTurns(
        pairs, [&plan] { runToTheEnd(plan); }, [&plan] { runBare(plan); });
    std::printf("{\"files\": %zu, \"run_ms\": %.0f, \"exiftool_ms\": %.0f, \"ratio\": %.3f}\n",
                plan.rollFiles.size(), result.subject, result.floor, result.ratio);
}

/// Whether exiftool starts with these arguments, of which it only sees that it is to tell its
/// version.
bool starts(std::vector<std::string> given)
{
    given.insert(given.begin(), "-ver");
    try {
        runChild(*Exiftool::locate(), given);
        return true;
    } catch (const std::system_error &failure) {
        if (failure.code() != std::errc::argument_list_too_long) {
            throw;
        }
        return false;
    }
}

void printLimit(const std::filesystem::path &folder)
{
    IngestPlan plan = planOf(folder);
    const std::vector<std::filesystem::path> all = plan.rollFiles;
    const auto take = [&](std::size_t count) {
        plan.rollFiles.assign(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(count));
    };
    std::size_t most = 0;
    for (std::size_t beyond = all.size(); beyond - most > 1;) {
        const std::size_t middle = (most + beyond) / 2;
        take(middle);
        (starts(arguments(plan)) ? most : beyond) = middle;
    }
    take(most);
    std::size_t bytes = 0;
    for (const std::string &argument : arguments(plan)) {
        bytes += argument.size() + 1;
    }
    const double run = bench::milliseconds([&] { runToTheEnd(plan); });
    take(most + 1);
    std::vector<double> refusals(8);
    std::generate(refusals.begin(), refusals.end(), [&plan] { return timeRefusal(plan); });
    std::printf("{\"files\": %zu, \"megabytes\": %.3f, \"run_ms\": %.0f, \"refusal_ms\": %.1f}\n",
                most, static_cast<double>(bytes) / 1e6, run, bench::median(refusals));
}

} // namespace
} // namespace quillmark

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const std::string_view figure = argc >= 3 ? argv[1] : "";
    try {
        if (figure == "time" && argc == 4) {
            quillmark::printTime(argv[2], std::atoi(argv[3]));
            return EXIT_SUCCESS;
        }
        if (figure == "limit" && argc == 3) {
            quillmark::printLimit(argv[2]);
            return EXIT_SUCCESS;
        }
        std::fputs("usage: bench-run time FOLDER PAIRS | limit FOLDER\n", stderr);
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "bench-run: %s\n", failure.what());
    }
    return EXIT_FAILURE;
}
