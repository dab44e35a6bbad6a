// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "embedding/Leftovers.h"

#include "base/Uninterrupted.h"
#include "base/UniqueFd.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>
#include <utility>

namespace quillmark {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view suffix = "_exiftool_tmp";

/// A file that looks left behind, and what changes with it while somebody is at it.
struct Leftover {
    std::string path;
    struct stat status {};
};

bool isUnchanged(const struct stat &before, const struct stat &now)
{
    return before.st_dev == now.st_dev && before.st_ino == now.st_ino &&
           before.st_ctim.tv_sec == now.st_ctim.tv_sec &&
           before.st_ctim.tv_nsec == now.st_ctim.tv_nsec;
}

/// One that a killed exiftool leaves always has the whole file beside it.
void collectBeside(const std::string &file, std::vector<Leftover> &found)
{
    std::error_code ignored;
    Leftover leftover;
    leftover.path.reserve(file.size() + suffix.size());
    leftover.path.append(file).append(suffix);
    if (::lstat(leftover.path.c_str(), &leftover.status) == 0 && S_ISREG(leftover.status.st_mode) &&
        fs::exists(file, ignored)) {
        found.push_back(std::move(leftover));
    }
}

/// A folder stands for the images directly in it, those in its subfolders not among them.
void collectWithin(const std::string &folder, std::vector<Leftover> &found)
{
    std::error_code failure;
    for (fs::directory_iterator entry(folder, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        const std::string &path = entry->path().native();
        if (path.ends_with(suffix)) {
            collectBeside(path.substr(0, path.size() - suffix.size()), found);
        }
    }
}

bool isDirectory(const std::string &file)
{
    struct stat status {};
    return ::stat(file.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::vector<Leftover> leftovers(const std::vector<std::string> &files)
{
    std::vector<Leftover> found;
    for (const std::string &file : files) {
        collectBeside(file, found);
        if (isDirectory(file)) {
            collectWithin(file, found);
        }
    }
    return found;
}

/// exiftool closes its file before it renames it. In between nobody has it open, so what was
/// changed a moment ago is left alone for much longer than that takes.
constexpr std::chrono::nanoseconds settling = std::chrono::seconds(1);

std::chrono::nanoseconds age(const struct stat &status)
{
    return std::chrono::system_clock::now().time_since_epoch() -
           std::chrono::seconds(status.st_ctim.tv_sec) -
           std::chrono::nanoseconds(status.st_ctim.tv_nsec);
}

/// Waits until all have been left alone for long enough. A clock that is wrong does not count:
/// whether they were is seen by whether they have changed.
void awaitSettling(const std::vector<Leftover> &found)
{
    std::chrono::nanoseconds youngest = settling;
    for (const Leftover &leftover : found) {
        youngest = std::min(youngest, age(leftover.status));
    }
    if (youngest < settling) {
        std::this_thread::sleep_for(std::min(settling - youngest, settling));
    }
}

/// Whether it is what it was, and nobody has it open. The kernel gives a lease for writing only on
/// a file that nobody else has open, in this process or another one. It gives it to the owner of
/// the file, and where the file system has leases; anybody else does not know. Opened for reading,
/// because a temporary file has the permissions of its original in the end.
bool isAbandoned(const Leftover &leftover)
{
    const UniqueFd file(uninterrupted([&leftover] {
        return ::open(leftover.path.c_str(),
                      O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    }));
    struct stat now {};
    if (!file || ::fstat(file.get(), &now) != 0 || !isUnchanged(leftover.status, now)) {
        return false;
    }
    // Somebody who opens it now has us be told by a signal, whose usual one ends the process.
    const auto set = [&file](int command, int value) {
        return uninterrupted([&] { return ::fcntl(file.get(), command, value); }) == 0;
    };
    if (!set(F_SETSIG, SIGURG) || !set(F_SETLEASE, F_WRLCK)) {
        return false;
    }
    ::fcntl(file.get(), F_SETLEASE, F_UNLCK);
    return true;
}

} // namespace

void removeLeftovers(const std::vector<std::string> &files, WritingMark &mark)
{
    const std::vector<Leftover> found = leftovers(files);
    if (found.empty()) {
        return;
    }
    awaitSettling(found);
    mark.ifAlone([&found] {
        for (const Leftover &leftover : found) {
            if (isAbandoned(leftover)) {
                std::error_code ignored;
                fs::remove(leftover.path, ignored);
            }
        }
    });
}

} // namespace quillmark
