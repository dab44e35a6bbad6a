// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "ingest/Ingestor.h"

#include "base/PathText.h"
#include "ingest/DurableCopies.h"
#include "ingest/FileCopy.h"
#include "ingest/FileError.h"
#include "ingest/Workplace.h"

#include <sys/stat.h>

#include <cerrno>
#include <optional>
#include <set>
#include <utility>

namespace quillmark::Ingestor {
namespace {

namespace fs = std::filesystem;

/// What makes two names one file, however they are spelled or linked.
using FileIdentity = std::pair<dev_t, ino_t>;

[[noreturn]] void failToLookAt(const fs::path &path, std::error_code reason)
{
    throw FileError(QStringLiteral("Could not look at “%1”").arg(pathText(path)), path, reason);
}

/// Nothing where nothing is there. Any other failure is one of the check that asks.
template <typename Stat>
std::optional<FileIdentity> identity(const fs::path &path, Stat stat)
{
    struct ::stat status {};
    if (stat(path.c_str(), &status) == 0) {
        return FileIdentity{status.st_dev, status.st_ino};
    }
    if (errno != ENOENT && errno != ENOTDIR && errno != ELOOP) {
        failToLookAt(path, {errno, std::generic_category()});
    }
    return std::nullopt;
}

/// A source that is itself the destination of a copy would be removed to make room for it.
/// Such sources come from a recursive listing that meets an output folder of an earlier
/// run, from links, and from file systems that do not tell letter case apart.
void refuseSourcesThatAreDestinations(const std::vector<fs::path> &files,
                                      const fs::path &outputFolder)
{
    std::set<FileIdentity> destinations;
    for (const fs::path &file : files) {
        // The entry itself, not what it links to: a link is replaced, its target stays.
        if (const auto entry = identity(outputFolder / file.filename(), ::lstat)) {
            destinations.insert(*entry);
        }
    }
    for (const fs::path &file : files) {
        const auto source = identity(file, ::stat);
        if (source && destinations.contains(*source)) {
            throw FileError(QStringLiteral("Could not copy “%1” into “%2”, where it already is")
                                .arg(pathText(file), pathText(outputFolder)),
                            file, std::make_error_code(std::errc::file_exists));
        }
    }
}

bool liesWithin(const fs::path &path, const fs::path &folder)
{
    std::error_code failure;
    fs::path above = fs::canonical(path, failure);
    if (failure) {
        failToLookAt(path, failure);
    }
    const auto sought = identity(folder, ::stat);
    while (!sought || identity(above, ::stat) != sought) {
        if (!above.has_relative_path()) {
            return false;
        }
        above = above.parent_path();
    }
    return true;
}

bool isDirectory(const fs::path &path)
{
    std::error_code failure;
    const fs::file_status status = fs::status(path, failure);
    if (status.type() == fs::file_type::none &&
        failure != std::errc::too_many_symbolic_link_levels) {
        failToLookAt(path, failure);
    }
    return fs::is_directory(status);
}

/// A directory (or a link to one) with an image's name may hold the output folder: copying
/// it there would never end.
void refuseDirectoriesAroundOutput(const std::vector<fs::path> &files, const fs::path &outputFolder)
{
    for (const fs::path &file : files) {
        if (isDirectory(file) && liesWithin(outputFolder, file)) {
            throw FileError(QStringLiteral("Could not copy “%1” into itself").arg(pathText(file)),
                            file, std::make_error_code(std::errc::invalid_argument));
        }
    }
}

constexpr const char *originals = "_originals";
constexpr const char *tagged = "_tagged";

std::vector<fs::path> copyInto(const fs::path &outputFolder, const std::vector<fs::path> &files)
{
    std::error_code failure;
    fs::create_directories(outputFolder, failure);
    if (failure) {
        throw FileError(
            QStringLiteral("Could not make the folder “%1”").arg(pathText(outputFolder)),
            outputFolder, failure);
    }
    for (const char *output : {originals, tagged}) { // the killed run may have had another mode
        removeAbandonedWorkplaces(outputFolder.parent_path() / output);
    }
    refuseSourcesThatAreDestinations(files, outputFolder);
    refuseDirectoriesAroundOutput(files, outputFolder);

    std::vector<fs::path> copies;
    copies.reserve(files.size());
    DurableCopies copying;
    for (const fs::path &file : files) {
        copies.push_back(outputFolder / file.filename());
        copying.add(file, copies.back());
    }
    copying.finish();
    syncDirectory(outputFolder);
    syncDirectory(outputFolder.parent_path());
    return copies;
}

} // namespace

PreparedFiles prepareFiles(const std::vector<fs::path> &files, const fs::path &in, BackupMode mode)
{
    switch (mode) {
    case BackupMode::backupOriginals:
        return {.mutated = files, .backups = copyInto(fs::absolute(in / originals), files)};
    case BackupMode::writeCopies:
        return {.mutated = copyInto(fs::absolute(in / tagged), files), .backups = {}};
    case BackupMode::none:
        return {.mutated = files, .backups = {}};
    }
    Q_UNREACHABLE();
}

} // namespace quillmark::Ingestor
