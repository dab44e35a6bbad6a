// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "ingest/FileCopy.h"

#include "base/PathText.h"
#include "base/Uninterrupted.h"
#include "base/UniqueFd.h"
#include "ingest/FileError.h"
#include "ingest/Workplace.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <vector>

namespace quillmark {
namespace {

namespace fs = std::filesystem;

constexpr mode_t permissionBits = 0777;

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

/// Opens for reading what is there: a file, a directory, or whatever else has the name.
UniqueFd openExisting(const fs::path &path, int furtherFlags)
{
    return UniqueFd(
        uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | furtherFlags); }));
}

/// One copy under way: the names that its failures tell.
class Copying
{
public:
    Copying(const fs::path &source, const fs::path &destination)
        : m_source(source), m_destination(destination)
    {}

    [[noreturn]] void fail(std::error_code reason) const
    {
        throw FileError(QStringLiteral("Could not copy “%1” to “%2”")
                            .arg(pathText(m_source), pathText(m_destination)),
                        m_source, reason);
    }
    [[noreturn]] void fail() const { fail(lastError()); }

    void check(bool succeeded) const
    {
        if (!succeeded) {
            fail();
        }
    }

    /// A workplace beside the destination.
    Workplace makeWorkplace() const
    try {
        return Workplace(m_destination.parent_path());
    } catch (const std::system_error &failure) {
        fail(failure.code());
    }

private:
    const fs::path &m_source;
    const fs::path &m_destination;
};

/// Reads and writes until the source ends: the way that works everywhere.
void copyThroughMemory(int from, int to, const Copying &copying)
{
    constexpr std::size_t bufferSize = 1U << 20U;
    std::vector<char> buffer(bufferSize);
    for (;;) {
        const ssize_t got = uninterrupted([&] { return ::read(from, buffer.data(), bufferSize); });
        copying.check(got >= 0);
        if (got == 0) {
            return;
        }
        for (ssize_t written = 0; written < got;) {
            const ssize_t count = uninterrupted([&] {
                return ::write(to, buffer.data() + written,
                               static_cast<std::size_t>(got - written));
            });
            copying.check(count >= 0);
            written += count;
        }
    }
}

/// Copies the content: as a clone that shares its blocks, else inside the kernel, else
/// through memory. Each way takes over where the one before could not start or stopped.
void copyContent(int from, int to, const Copying &copying)
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
    copyThroughMemory(from, to, copying);
}

/// Some file systems (FAT, network shares) have no permissions or owners to keep: that a
/// copy cannot have them there is no reason to go without a backup.
bool succeededOrUnsupported(int result)
{
    return result == 0 || errno == EPERM || errno == ENOTSUP || errno == ENOSYS;
}

/// Permissions and times go last, so that writing does not change them again.
void copyAttributes(const struct stat &from, int to, const Copying &copying)
{
    copying.check(succeededOrUnsupported(::fchmod(to, from.st_mode & permissionBits)));
    const std::array<timespec, 2> times{from.st_atim, from.st_mtim};
    copying.check(succeededOrUnsupported(::futimens(to, times.data())));
}

/// A directory's entries go to disk; file systems that need no such call refuse it.
bool syncDirectoryHandle(int directory)
{
    return uninterrupted([&] { return ::fsync(directory); }) == 0 || errno == EINVAL;
}

void copyFile(int from, const struct stat &status, const fs::path &target, const Copying &copying)
{
    constexpr int createNew = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
    const UniqueFd to(
        uninterrupted([&] { return ::open(target.c_str(), createNew, S_IRUSR | S_IWUSR); }));
    copying.check(static_cast<bool>(to));
    copyContent(from, to.get(), copying);
    copyAttributes(status, to.get(), copying);
    copying.check(uninterrupted([&] { return ::fsync(to.get()); }) == 0);
}

/// Inside a directory, links that lead to no file: to directories, maybe in circles, or nowhere.
bool staysALink(const fs::path &entry)
{
    std::error_code ignored;
    return fs::is_symlink(fs::symlink_status(entry, ignored)) &&
           !fs::is_regular_file(fs::status(entry, ignored));
}

void copyEntry(const fs::path &source, const fs::path &target, const Copying &copying);

void copyDirectory(const fs::path &source, const struct stat &status, const fs::path &target,
                   const Copying &copying)
{
    copying.check(::mkdir(target.c_str(), S_IRWXU) == 0);
    std::error_code failure;
    fs::directory_iterator entries(source, failure);
    while (failure == std::errc::interrupted) {
        entries = fs::directory_iterator(source, failure);
    }
    while (!failure && entries != fs::directory_iterator()) {
        const fs::path inner = target / entries->path().filename();
        if (staysALink(entries->path())) {
            fs::copy_symlink(entries->path(), inner, failure);
        } else {
            copyEntry(entries->path(), inner, copying);
        }
        if (!failure) {
            entries.increment(failure);
        }
    }
    if (failure) {
        copying.fail(failure);
    }
    const UniqueFd to = openExisting(target, O_DIRECTORY);
    copying.check(static_cast<bool>(to));
    copyAttributes(status, to.get(), copying);
    copying.check(syncDirectoryHandle(to.get()));
}

bool canBeCopied(const struct stat &status)
{
    return S_ISREG(status.st_mode) || S_ISDIR(status.st_mode);
}

void copyEntry(const fs::path &source, const fs::path &target, const Copying &copying)
{
    // The kind is asked for before opening, because opening alone already does something to a
    // device or to the writer at the other end of a pipe, and once more afterwards, because the
    // name may stand for something else by then: without O_NONBLOCK, a pipe would hold the run
    // for ever.
    struct stat status {};
    copying.check(::stat(source.c_str(), &status) == 0);
    if (!canBeCopied(status)) {
        copying.fail(std::make_error_code(std::errc::not_supported));
    }
    const UniqueFd from = openExisting(source, O_NONBLOCK | O_NOCTTY);
    copying.check(static_cast<bool>(from));
    copying.check(::fstat(from.get(), &status) == 0);
    if (!canBeCopied(status)) {
        copying.fail(std::make_error_code(std::errc::not_supported));
    }
    if (S_ISDIR(status.st_mode)) {
        copyDirectory(source, status, target, copying);
    } else {
        copyFile(from.get(), status, target, copying);
    }
}

/// Takes the place of what a rename cannot replace: a directory, or a file by a directory.
void exchange(const fs::path &destination, const Workplace &workplace, const Copying &copying)
{
    const fs::path copy = workplace.copy();
    if (::renameat2(AT_FDCWD, copy.c_str(), AT_FDCWD, destination.c_str(), RENAME_EXCHANGE) == 0) {
        return;
    }
    // Nothing is there to change places with, or the file system cannot do it in one step.
    const fs::path replaced = workplace.replaced();
    const bool moved = ::rename(destination.c_str(), replaced.c_str()) == 0;
    copying.check(moved || errno == ENOENT);
    if (::rename(copy.c_str(), destination.c_str()) != 0) {
        const std::error_code reason = lastError();
        if (moved) {
            ::rename(replaced.c_str(), destination.c_str());
        }
        copying.fail(reason);
    }
}

/// Gives the finished copy its place; what was there goes with the workplace.
void replace(const fs::path &destination, const Workplace &workplace, const Copying &copying)
{
    const fs::path copy = workplace.copy();
    std::error_code ignored;
    if (fs::is_directory(copy, ignored) ||
        fs::is_directory(fs::symlink_status(destination, ignored))) {
        exchange(destination, workplace, copying);
        return;
    }
    copying.check(::rename(copy.c_str(), destination.c_str()) == 0);
}

} // namespace

void copyDurably(const fs::path &source, const fs::path &destination)
{
    const Copying copying(source, destination);
    const Workplace workplace = copying.makeWorkplace();
    copyEntry(source, workplace.copy(), copying);
    replace(destination, workplace, copying);
}

void syncDirectory(const fs::path &directory)
{
    const UniqueFd handle = openExisting(directory, O_DIRECTORY);
    if (!handle || !syncDirectoryHandle(handle.get())) {
        throw FileError(QStringLiteral("Could not put “%1” on disk").arg(pathText(directory)),
                        directory, lastError());
    }
}

} // namespace quillmark
