// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// What the program's own work on files costs, beside the usual tools. Prints one JSON object.
//   bench-files tree FOLDER PAIRS     listing with subfolders, beside find and sort
//   bench-files roll FOLDER PAIRS     listing one folder, beside a loop over readdir()
//   bench-files backup FOLDER PAIRS   backups of a roll, beside cp and sync
//   bench-files clone FOLDER PAIRS    the same, where the file system shares blocks, beside cp
//   bench-files synced FOLDER PAIRS   the same, beside cp and sync
//   bench-files grow FOLDER TIMES     listing, searching (no slate is there), backups and tagging

#include "bench/Measure.h"
#include "detection/SlateDetectionError.h"
#include "detection/SlateDetector.h"
#include "embedding/Exiftool.h"
#include "ingest/IngestViewModel.h"
#include "ingest/Ingestor.h"
#include "support/Await.h"
#include "support/Samples.h"

#include <QCoreApplication>

#include <dirent.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace quillmark {
namespace {

namespace fs = std::filesystem;
using bench::Comparison;

/// Runs a command line, which finds the folder in the variable ROLL.
void shell(const char *command, const fs::path &folder)
{
    ::setenv("ROLL", folder.c_str(), 1);
    if (std::system(command) != 0) {
        throw std::runtime_error(std::string(command) + " failed");
    }
}

using Listing = std::vector<fs::path>;

Listing list(const fs::path &folder, bool recursive)
{
    Listing images = SlateDetector::enumerateImages(folder, recursive);
    if (images.empty()) {
        throw std::runtime_error("nothing to list");
    }
    return images;
}

/// What a listing cannot go without: each entry's name.
std::size_t readFolder(const fs::path &folder)
{
    DIR *const directory = ::opendir(folder.c_str());
    std::size_t letters = 0;
    while (const dirent *const entry = ::readdir(directory)) {
        letters += static_cast<unsigned char>(entry->d_name[0]);
    }
    ::closedir(directory);
    return letters;
}

void print(const Comparison &result, double times = 1)
{
    std::printf("{\"subject_ms\": %.4f, \"floor_ms\": %.4f, \"ratio\": %.3f, \"pairs\": %zu}\n",
                result.subject / times, result.floor / times, result.ratio, result.pairs.size());
}

void tree(const fs::path &folder, int pairs)
{
    Listing images; // which a program has for longer than a listing takes
    print(bench::compareInTurns(
        pairs, [&] { images = list(folder, true); },
        [&] { shell(R"(find "$ROLL" | LC_ALL=C sort > /dev/null)", folder); },
        [&] { images = {}; }));
}

void roll(const fs::path &folder, int pairs)
{
    constexpr int times = 50; // one takes microseconds
    std::vector<Listing> listings(times);
    std::size_t letters = 0;
    print(bench::compareInTurns(
              20 * pairs,
              [&] {
                  for (Listing &images : listings) {
                      images = list(folder, false);
                  }
              },
              [&] {
                  for (int i = 0; i < times; ++i) {
                      letters += readFolder(folder);
                  }
              },
              [&] { listings.assign(times, {}); }),
          times);
    if (letters == 0) {
        throw std::runtime_error("nothing to list");
    }
}

/// Backups beside a command that copies into the folder "_copies". Before each of them nothing
/// of the other is left, on the disk or on its way there.
void backup(const fs::path &folder, int pairs, const char *command)
{
    const std::vector<fs::path> files = SlateDetector::enumerateImages(folder, false);
    const auto clear = [&] {
        fs::remove_all(folder / "_originals");
        fs::remove_all(folder / "_copies");
        fs::create_directory(folder / "_copies");
        ::sync();
    };
    print(bench::compareInTurns(
        pairs, [&] { Ingestor::prepareFiles(files, folder, BackupMode::backupOriginals); },
        [&] { shell(command, folder); }, clear));
    clear();
    fs::remove(folder / "_copies");
}

void copied(const fs::path &folder, int pairs)
{
    backup(folder, pairs, R"(cp "$ROLL"/*.jpg "$ROLL/_copies" && sync -d "$ROLL"/_copies/*)");
}

void cloned(const fs::path &folder, int pairs)
{
    backup(folder, pairs, R"(cp --reflink=always "$ROLL"/*.jpg "$ROLL/_copies")");
}

/// Beside clones that are on disk at the end, as ours are.
void clonedAndSynced(const fs::path &folder, int pairs)
{
    backup(folder, pairs,
           R"(cp --reflink=always "$ROLL"/*.jpg "$ROLL/_copies" && sync -d "$ROLL"/_copies/*)");
}

void search(const fs::path &folder)
{
    try {
        test::await(SlateDetector::detectInFolder(folder, false), std::chrono::minutes(10));
    } catch (const SlateDetectionError &) {
        return;
    }
    throw std::runtime_error("a slate was found where none is");
}

void tag(const Listing &files)
{
    test::await(Exiftool::embed(files, test::fullPayload(), ownGeneratorVersion.toString()),
                std::chrono::minutes(10));
}

/// The median of what a call takes; `reset` runs before each and is not timed.
template <typename Call, typename Reset>
double typical(int times, Call call, Reset reset)
{
    std::vector<double> all;
    for (int i = 0; i < times; ++i) {
        reset();
        all.push_back(bench::milliseconds(call));
    }
    return bench::median(all);
}

void grow(const fs::path &folder, int times)
{
    const Listing files = list(folder, false);
    Listing images; // which a program has for longer than a listing takes
    const auto clear = [&folder] {
        fs::remove_all(folder / "_originals");
        ::sync();
    };
    const double listing = typical(
        20, [&] { images = list(folder, false); }, [&] { images = {}; });
    const double searching = typical(
        times, [&] { search(folder); }, [] {});
    const double backups = typical(
        times, [&] { Ingestor::prepareFiles(files, folder, BackupMode::backupOriginals); }, clear);
    const double tagging = typical(
        times, [&] { tag(files); }, clear);
    std::printf("{\"files\": %zu, \"listing_ms\": %.4f, \"searching_ms\": %.2f, "
                "\"backups_ms\": %.1f, \"tagging_ms\": %.1f}\n",
                files.size(), listing, searching, backups, tagging);
}

} // namespace
} // namespace quillmark

int main(int argc, char **argv)
{
    using namespace quillmark;
    const QCoreApplication application(argc, argv);
    const std::map<std::string, std::function<void(const fs::path &, int)>> figures{
        {"tree", tree},
        {"roll", roll},
        {"backup", copied},
        {"clone", cloned},
        {"synced", clonedAndSynced},
        {"grow", grow}};
    const auto figure = argc >= 3 ? figures.find(argv[1]) : figures.end();
    if (figure == figures.end()) {
        std::fputs("usage: bench-files tree|roll|backup|clone|synced|grow FOLDER [TIMES]\n",
                   stderr);
        return EXIT_FAILURE;
    }
    try {
        figure->second(argv[2], argc > 3 ? std::atoi(argv[3]) : 6);
        return EXIT_SUCCESS;
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "bench-files: %s\n", failure.what());
        return EXIT_FAILURE;
    }
}
