// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// Stands before the C library's functions for files that are open.

#include "faults/ChildWatch.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdarg>

// Both names under which the library has such a function stand here: which one a caller has
// depends on how it was built.

using namespace quillmark::test::watch;

namespace {

// A child calls it too, before it becomes its program.
int (*libraryFcntl)(int, int, ...) = nullptr;

Subject ofOpening(const Subject &path, int flags)
{
    const bool unnamed = (flags & O_TMPFILE) == O_TMPFILE;
    return path && unnamed ? Subject(*path + "/(unnamed)") : path;
}

/// Both names under which the library has open().
int openAs(const char *name, const char *path, int flags, mode_t mode)
{
    auto *const real = libraryFunction<int(const char *, int, ...)>(name);
    const Subject subject = ofOpening(ofPath(path), flags);
    const int descriptor =
        passOn("open", subject, {.changes = (flags & O_ACCMODE) != O_RDONLY, .path = path},
               [&](bool) { return real(path, flags, mode); });
    opened(descriptor, subject);
    return descriptor;
}

int openAtAs(const char *name, int folder, const char *path, int flags, mode_t mode)
{
    auto *const real = libraryFunction<int(int, const char *, int, ...)>(name);
    const Subject subject = ofOpening(ofPathAt(folder, path), flags);
    const int descriptor = passOn("openat", subject, {.changes = (flags & O_ACCMODE) != O_RDONLY},
                                  [&](bool) { return real(folder, path, flags, mode); });
    opened(descriptor, subject);
    return descriptor;
}

/// The mode stands among the arguments only where a file may be made.
mode_t modeFor(int flags, va_list &arguments)
{
    const bool given = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
    return given ? va_arg(arguments, mode_t) : 0;
}

} // namespace

namespace quillmark::test::watch {

void prepareFileCallsForChild()
{
    libraryFcntl = libraryFunction<int(int, int, ...)>("fcntl");
}

} // namespace quillmark::test::watch

extern "C" {

int open(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeFor(flags, arguments);
    va_end(arguments);
    return openAs("open", path, flags, mode);
}

int open64(const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeFor(flags, arguments);
    va_end(arguments);
    return openAs("open64", path, flags, mode);
}

int openat(int folder, const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeFor(flags, arguments);
    va_end(arguments);
    return openAtAs("openat", folder, path, flags, mode);
}

int openat64(int folder, const char *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeFor(flags, arguments);
    va_end(arguments);
    return openAtAs("openat64", folder, path, flags, mode);
}

int close(int descriptor)
{
    static auto *const real = libraryFunction<decltype(close)>("close");
    const Subject subject = ofDescriptor(descriptor);
    const Report details{};
    closed(descriptor);
    // Linux gives a descriptor up even where it reports a failure (close(2)).
    const int result = real(descriptor);
    return passOn("close", subject, details, [&](bool) { return result; });
}

int ioctl(int descriptor, unsigned long request, ...) noexcept
{
    static auto *const real = libraryFunction<int(int, unsigned long, ...)>("ioctl");
    va_list arguments;
    va_start(arguments, request);
    void *const argument = va_arg(arguments, void *);
    va_end(arguments);
    const bool clones = request == FICLONE;
    return passOn(clones ? "ioctl(FICLONE)" : "ioctl", ofDescriptor(descriptor),
                  {.changes = clones, .descriptor = descriptor},
                  [&](bool) { return real(descriptor, request, argument); });
}

int fcntl(int descriptor, int command, ...)
{
    va_list arguments;
    va_start(arguments, command);
    void *const argument = va_arg(arguments, void *);
    va_end(arguments);
    const auto call = [&](bool) { return libraryFcntl(descriptor, command, argument); };
    if (isChild()) {
        // A build that counts lines locks the files of its counts before the child is its program.
        return command == F_SETLKW ? call(false) : passOnInChild("fcntl", call);
    }
    if (libraryFcntl == nullptr) {
        prepareFileCallsForChild();
    }
    return passOn("fcntl", ofDescriptor(descriptor), {.descriptor = descriptor}, call);
}

int fcntl64(int descriptor, int command, ...)
{
    va_list arguments;
    va_start(arguments, command);
    void *const argument = va_arg(arguments, void *);
    va_end(arguments);
    return fcntl(descriptor, command, argument);
}

int flock(int descriptor, int operation) noexcept
{
    static auto *const real = libraryFunction<int(int, int)>("flock");
    return passOn("flock", ofDescriptor(descriptor), {.descriptor = descriptor},
                  [&](bool) { return real(descriptor, operation); });
}

int fsync(int descriptor)
{
    static auto *const real = libraryFunction<decltype(fsync)>("fsync");
    return passOn("fsync", ofDescriptor(descriptor), {.descriptor = descriptor},
                  [&](bool) { return real(descriptor); });
}

int fdatasync(int descriptor)
{
    static auto *const real = libraryFunction<decltype(fdatasync)>("fdatasync");
    return passOn("fdatasync", ofDescriptor(descriptor), {.descriptor = descriptor},
                  [&](bool) { return real(descriptor); });
}

int sync_file_range(int descriptor, off64_t offset, off64_t count, unsigned int flags)
{
    static auto *const real = libraryFunction<decltype(sync_file_range)>("sync_file_range");
    return passOn("sync_file_range", ofDescriptor(descriptor), {.descriptor = descriptor},
                  [&](bool) { return real(descriptor, offset, count, flags); });
}

int ftruncate(int descriptor, off_t size) noexcept
{
    static auto *const real = libraryFunction<int(int, off_t)>("ftruncate");
    return passOn("ftruncate", ofDescriptor(descriptor),
                  {.changes = true, .descriptor = descriptor},
                  [&](bool) { return real(descriptor, size); });
}

int ftruncate64(int descriptor, off64_t size) noexcept
{
    return ftruncate(descriptor, size);
}

int fstat(int descriptor, struct stat *status) noexcept
{
    static auto *const real = libraryFunction<int(int, struct stat *)>("fstat");
    return passOn("fstat", ofDescriptor(descriptor), {.descriptor = descriptor},
                  [&](bool) { return real(descriptor, status); });
}

int fstat64(int descriptor, struct stat64 *status) noexcept
{
    static auto *const real = libraryFunction<int(int, struct stat64 *)>("fstat64");
    return passOn("fstat", ofDescriptor(descriptor), {.descriptor = descriptor},
                  [&](bool) { return real(descriptor, status); });
}

int fchmod(int descriptor, mode_t mode) noexcept
{
    static auto *const real = libraryFunction<int(int, mode_t)>("fchmod");
    return passOn("fchmod", ofDescriptor(descriptor), {.changes = true, .descriptor = descriptor},
                  [&](bool) { return real(descriptor, mode); });
}

int futimens(int descriptor, const struct timespec times[2]) noexcept
{
    static auto *const real = libraryFunction<int(int, const struct timespec *)>("futimens");
    return passOn("futimens", ofDescriptor(descriptor), {.changes = true, .descriptor = descriptor},
                  [&](bool) { return real(descriptor, times); });
}

DIR *opendir(const char *path)
{
    static auto *const real = libraryFunction<decltype(opendir)>("opendir");
    const Subject subject = ofPath(path);
    DIR *const folder =
        passOn("opendir", subject, {.path = path}, [&](bool) { return real(path); });
    if (folder != nullptr) {
        opened(::dirfd(folder), subject);
    }
    return folder;
}

DIR *fdopendir(int descriptor)
{
    static auto *const real = libraryFunction<decltype(fdopendir)>("fdopendir");
    return passOn("fdopendir", ofDescriptor(descriptor), {.descriptor = descriptor},
                  [&](bool) { return real(descriptor); });
}

struct dirent *readdir(DIR *folder)
{
    static auto *const real = libraryFunction<decltype(readdir)>("readdir");
    return passOn("readdir", ofDescriptor(::dirfd(folder)), {}, [&](bool) { return real(folder); });
}

struct dirent64 *readdir64(DIR *folder)
{
    static auto *const real = libraryFunction<decltype(readdir64)>("readdir64");
    return passOn("readdir", ofDescriptor(::dirfd(folder)), {}, [&](bool) { return real(folder); });
}

int closedir(DIR *folder)
{
    static auto *const real = libraryFunction<decltype(closedir)>("closedir");
    const Subject subject = ofDescriptor(::dirfd(folder));
    closed(::dirfd(folder));
    const int result = real(folder);
    return passOn("closedir", subject, {}, [&](bool) { return result; });
}

} // extern "C"
