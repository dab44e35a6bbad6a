// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "ingest/FileCopy.h"

#include "base/PathText.h"
#include "base/Uninterrupted.h"
#include "base/UniqueFd.h"
#include "ingest/FileError.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>
#include <vector>

namespace quillmark {
namespace {

namespace fs = std::filesystem;

constexpr mode_t permissionBits = 0777;

/// Opens for reading what is there: a file, a directory, or whatever else has the name.
UniqueFd openExisting(const fs::path &path, int furtherFlags)
{
    return UniqueFd(
        uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | furtherFlags); }));
}

/// Reads and writes until the source ends: the way that works everywhere.
void copyThroughMemory(int from, int to, const CopyNames &names)
{
    constexpr std::size_t bufferSize = 1U << 20U;
    std::vector<char> buffer(bufferSize);
    for (;;) {
        const ssize_t got = uninterrupted([&] { return ::read(from, buffer.data(), bufferSize); });
        names.check(got >= 0);
        if (got == 0) {
            return;
        }
        for (ssize_t written = 0; written < got;) {
            const ssize_t count = uninterrupted([&] {
                return ::write(to, buffer.data() + written,
                               static_cast<std::size_t>(got - written));
            });
            names.check(count >= 0);
            written += count;
        }
    }
}

/// Copies the content: as a clone that shares its blocks, else inside the kernel, else
/// through memory. Each way takes over where the one before could not start or stopped.
void copyContent(int from, int to, const CopyNames &names)
{
    if (::ioctl(to, FICLONE, from) == 0) {
        return;
    }
    constexpr std::size_t chunk = 1U << 30U;
    for (;;) {
        const ssize_t count =
            uninterrupted([&] { return ::copy_file_range(from, nullptr, to, nullptr, chunk, 0); });
        if (count <= 0) {
            break;
        }
    }
    // At the end of the source this adds nothing; after a failure it goes on from there,
    // or meets the same failure (no space, a damaged disk) and tells it.
    copyThroughMemory(from, to, names);
}

/// Some file systems (FAT, network shares) have no permissions or owners to keep: that a
/// copy cannot have them there is no reason to go without a backup.
bool succeededOrUnsupported(int result)
{
    return result == 0 || errno == EPERM || errno == ENOTSUP || errno == ENOSYS;
}

/// Permissions and times go last, so that writing does not change them again. The owner may always
/// write to a folder's copy: else it could not be moved into its place, nor make room for that of
/// the next run, nor have the images in it tagged.
void copyAttributes(const struct stat &from, int to, const CopyNames &names)
{
    const mode_t always = S_ISDIR(from.st_mode) ? S_IRWXU : 0;
    names.check(succeededOrUnsupported(::fchmod(to, (from.st_mode & permissionBits) | always)));
    const std::array<timespec, 2> times{from.st_atim, from.st_mtim};
    names.check(succeededOrUnsupported(::futimens(to, times.data())));
}

/// Asks the kernel to begin writing what it holds of a file, and does not wait: only a hint.
void startWriting(int file)
{
    ::sync_file_range(file, 0, 0, SYNC_FILE_RANGE_WRITE);
}

UniqueFd copyFile(int from, const struct stat &status, const fs::path &target,
                  const CopyNames &names)
{
    constexpr int createNew = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
    UniqueFd to(
        uninterrupted([&] { return ::open(target.c_str(), createNew, S_IRUSR | S_IWUSR); }));
    names.check(static_cast<bool>(to));
    copyContent(from, to.get(), names);
    copyAttributes(status, to.get(), names);
    startWriting(to.get());
    return to;
}

/// Inside a directory, links that lead to no file: to directories, maybe in circles, or nowhere.
bool staysALink(const fs::path &entry)
{
    std::error_code ignored;
    return fs::is_symlink(fs::symlink_status(entry, ignored)) &&
           !fs::is_regular_file(fs::status(entry, ignored));
}

UniqueFd copyEntry(const fs::path &source, const fs::path &target, const CopyNames &names);

UniqueFd copyDirectory(const fs::path &source, const struct stat &status, const fs::path &target,
                       const CopyNames &names)
{
    names.check(::mkdir(target.c_str(), S_IRWXU) == 0);
    std::error_code failure;
    fs::directory_iterator entries(source, failure);
    while (failure == std::errc::interrupted) {
        entries = fs::directory_iterator(source, failure);
    }
    while (!failure && entries != fs::directory_iterator()) {
        const fs::path name = entries->path().filename();
        const CopyNames innerNames(source / name, names.destination() / name);
        if (staysALink(innerNames.source())) {
            fs::copy_symlink(innerNames.source(), target / name, failure);
            if (failure) {
                innerNames.fail(failure);
            }
        } else {
            innerNames.check(syncHandle(copyEntry(innerNames.source(), target / name, innerNames)));
        }
        entries.increment(failure);
    }
    if (failure) {
        names.fail(failure);
    }
    UniqueFd to = openExisting(target, O_DIRECTORY);
    names.check(static_cast<bool>(to));
    copyAttributes(status, to.get(), names);
    return to;
}

bool canBeCopied(const struct stat &status)
{
    return S_ISREG(status.st_mode) || S_ISDIR(status.st_mode);
}

UniqueFd copyEntry(const fs::path &source, const fs::path &target, const CopyNames &names)
{
    // The kind is asked for before opening, because opening alone already does something to a
    // device or to the writer at the other end of a pipe, and once more afterwards, because the
    // name may stand for something else by then: without O_NONBLOCK, a pipe would hold the run
    // for ever.
    struct stat status {};
    names.check(::stat(source.c_str(), &status) == 0);
    if (!canBeCopied(status)) {
        names.fail(std::make_error_code(std::errc::not_supported));
    }
    const UniqueFd from = openExisting(source, O_NONBLOCK | O_NOCTTY);
    names.check(static_cast<bool>(from));
    names.check(::fstat(from.get(), &status) == 0);
    if (!canBeCopied(status)) {
        names.fail(std::make_error_code(std::errc::not_supported));
    }
    return S_ISDIR(status.st_mode) ? copyDirectory(source, status, target, names)
                                   : copyFile(from.get(), status, target, names);
}

} // namespace

UniqueFd copyTree(const CopyNames &names, const fs::path &target)
{
    return copyEntry(names.source(), target, names);
}

bool syncHandle(const UniqueFd &handle)
{
    // File systems whose directories need no such call refuse it.
    return uninterrupted([&] { return ::fsync(handle.get()); }) == 0 || errno == EINVAL;
}

void syncDirectory(const fs::path &directory)
{
    const UniqueFd handle = openExisting(directory, O_DIRECTORY);
    if (!handle || !syncHandle(handle)) {
        throw FileError(QStringLiteral("Could not put “%1” on disk").arg(pathText(directory)),
                        directory, {errno, std::generic_category()});
    }
}

} // namespace quillmark
