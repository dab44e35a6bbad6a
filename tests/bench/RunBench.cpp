// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// What the session's run costs beside the bare exiftool with the same arguments, over the
// images of a folder and without backups. Prints one JSON object.

#include "bench/Measure.h"
#include "embedding/ChildProcess.h"
#include "embedding/EmbedRun.h"
#include "embedding/Exiftool.h"
#include "ingest/IngestViewModel.h"
#include "support/Await.h"
#include "support/Samples.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace quillmark {
namespace {

void runSession(const IngestPlan &plan)
{
    IngestViewModel session;
    session.setBackupMode(BackupMode::none);
    session.setState(IngestViewModel::Ready{plan});
    test::await(session.runIngest(), std::chrono::minutes(10));
    if (!std::holds_alternative<IngestViewModel::Done>(session.state())) {
        throw std::runtime_error("the run failed");
    }
}

void runBare(const IngestPlan &plan)
{
    const auto arguments = embedArguments(
        *Exiftool::configURL(),
        Exiftool::tagArguments(plan.detection.payload, ownGeneratorVersion.toString()),
        plan.rollFiles);
    if (runChild(*Exiftool::locate(), arguments).status != 0) {
        throw std::runtime_error("exiftool failed");
    }
}

int run(const std::filesystem::path &folder, int pairs)
{
    IngestPlan plan;
    plan.folder = folder;
    plan.detection.payload = test::fullPayload();
    plan.rollFiles = SlateDetector::enumerateImages(folder, false);
    plan.backupMode = BackupMode::none;
    runBare(plan); // both find the files as a run leaves them
    const bench::Comparison result = bench::compareInTurns(
        pairs, [&plan] { runSession(plan); }, [&plan] { runBare(plan); });
    std::printf("{\"files\": %zu, \"run_ms\": %.0f, \"exiftool_ms\": %.0f, \"ratio\": %.3f}\n",
                plan.rollFiles.size(), result.subject, result.floor, result.ratio);
    return EXIT_SUCCESS;
}

} // namespace
} // namespace quillmark

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    if (argc != 3) {
        std::fputs("usage: bench-run FOLDER PAIRS\n", stderr);
        return EXIT_FAILURE;
    }
    try {
        return quillmark::run(argv[1], std::atoi(argv[2]));
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "bench-run: %s\n", failure.what());
        return EXIT_FAILURE;
    }
}
