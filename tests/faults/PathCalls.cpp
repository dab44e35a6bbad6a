// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// Stands before the C library's functions that take paths.

#include "faults/CallWatch.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

using namespace quillmark::test::watch;

namespace {

/// What concerns two paths, of which either may be none of our business.
Subject ofBoth(const Subject &from, const Subject &to)
{
    if (!from && !to) {
        return std::nullopt;
    }
    return from.value_or("elsewhere") + " -> " + to.value_or("elsewhere");
}

template <typename Status>
int statAs(const char *name, const char *function, const char *path, Status *status)
{
    auto *const real = libraryFunction<int(const char *, Status *)>(name);
    return passOn(function, ofPath(path), {}, [&](bool) { return real(path, status); });
}

template <typename Status>
int statAtAs(const char *name, int folder, const char *path, Status *status, int flags)
{
    auto *const real = libraryFunction<int(int, const char *, Status *, int)>(name);
    return passOn("fstatat", ofPathAt(folder, path), {},
                  [&](bool) { return real(folder, path, status, flags); });
}

} // namespace

extern "C" {

int stat(const char *path, struct stat *status) noexcept
{
    return statAs("stat", "stat", path, status);
}

int stat64(const char *path, struct stat64 *status) noexcept
{
    return statAs("stat64", "stat", path, status);
}

int lstat(const char *path, struct stat *status) noexcept
{
    return statAs("lstat", "lstat", path, status);
}

int lstat64(const char *path, struct stat64 *status) noexcept
{
    return statAs("lstat64", "lstat", path, status);
}

int fstatat(int folder, const char *path, struct stat *status, int flags) noexcept
{
    return statAtAs("fstatat", folder, path, status, flags);
}

int fstatat64(int folder, const char *path, struct stat64 *status, int flags) noexcept
{
    return statAtAs("fstatat64", folder, path, status, flags);
}

int statx(int folder, const char *path, int flags, unsigned int mask, struct statx *status) noexcept
{
    static auto *const real =
        libraryFunction<int(int, const char *, int, unsigned int, struct statx *)>("statx");
    return passOn("statx", ofPathAt(folder, path), {},
                  [&](bool) { return real(folder, path, flags, mask, status); });
}

int access(const char *path, int mode) noexcept
{
    static auto *const real = libraryFunction<int(const char *, int)>("access");
    return passOn("access", ofPath(path), {}, [&](bool) { return real(path, mode); });
}

char *realpath(const char *path, char *resolved) noexcept
{
    static auto *const real = libraryFunction<char *(const char *, char *)>("realpath");
    return passOn("realpath", ofPath(path), {}, [&](bool) { return real(path, resolved); });
}

ssize_t readlink(const char *path, char *buffer, std::size_t size) noexcept
{
    static auto *const real =
        libraryFunction<ssize_t(const char *, char *, std::size_t)>("readlink");
    return passOn("readlink", ofPath(path), {}, [&](bool) { return real(path, buffer, size); });
}

int mkdir(const char *path, mode_t mode) noexcept
{
    static auto *const real = libraryFunction<int(const char *, mode_t)>("mkdir");
    return passOn("mkdir", ofPath(path), {.changes = true, .path = path},
                  [&](bool) { return real(path, mode); });
}

char *mkdtemp(char *pattern) noexcept
{
    static auto *const real = libraryFunction<char *(char *)>("mkdtemp");
    return passOn("mkdtemp", ofPath(pattern), {.changes = true, .path = pattern},
                  [&](bool) { return real(pattern); });
}

int mkostemp(char *pattern, int flags)
{
    static auto *const real = libraryFunction<decltype(mkostemp)>("mkostemp");
    const Subject subject = ofPath(pattern);
    const int descriptor = passOn("mkostemp", subject, {.changes = true, .path = pattern},
                                  [&](bool) { return real(pattern, flags); });
    opened(descriptor, subject);
    return descriptor;
}

int rename(const char *from, const char *to) noexcept
{
    static auto *const real = libraryFunction<int(const char *, const char *)>("rename");
    return passOn("rename", ofBoth(ofPath(from), ofPath(to)), {.changes = true, .path = to},
                  [&](bool) { return real(from, to); });
}

int renameat2(int fromFolder, const char *from, int toFolder, const char *to,
              unsigned int flags) noexcept
{
    static auto *const real =
        libraryFunction<int(int, const char *, int, const char *, unsigned int)>("renameat2");
    return passOn("renameat2", ofBoth(ofPathAt(fromFolder, from), ofPathAt(toFolder, to)),
                  {.changes = true, .path = to},
                  [&](bool) { return real(fromFolder, from, toFolder, to, flags); });
}

int link(const char *from, const char *to) noexcept
{
    static auto *const real = libraryFunction<int(const char *, const char *)>("link");
    return passOn("link", ofPath(to), {.changes = true, .path = to},
                  [&](bool) { return real(from, to); });
}

int linkat(int fromFolder, const char *from, int toFolder, const char *to, int flags) noexcept
{
    static auto *const real =
        libraryFunction<int(int, const char *, int, const char *, int)>("linkat");
    return passOn("linkat", ofPathAt(toFolder, to), {.changes = true, .path = to},
                  [&](bool) { return real(fromFolder, from, toFolder, to, flags); });
}

int symlink(const char *target, const char *path) noexcept
{
    static auto *const real = libraryFunction<int(const char *, const char *)>("symlink");
    return passOn("symlink", ofPath(path), {.changes = true, .path = path},
                  [&](bool) { return real(target, path); });
}

int unlink(const char *path) noexcept
{
    static auto *const real = libraryFunction<int(const char *)>("unlink");
    return passOn("unlink", ofPath(path), {.changes = true, .path = path},
                  [&](bool) { return real(path); });
}

int unlinkat(int folder, const char *path, int flags) noexcept
{
    static auto *const real = libraryFunction<int(int, const char *, int)>("unlinkat");
    return passOn("unlinkat", ofPathAt(folder, path), {.changes = true},
                  [&](bool) { return real(folder, path, flags); });
}

int rmdir(const char *path) noexcept
{
    static auto *const real = libraryFunction<int(const char *)>("rmdir");
    return passOn("rmdir", ofPath(path), {.changes = true, .path = path},
                  [&](bool) { return real(path); });
}

int remove(const char *path) noexcept
{
    static auto *const real = libraryFunction<int(const char *)>("remove");
    return passOn("remove", ofPath(path), {.changes = true, .path = path},
                  [&](bool) { return real(path); });
}

int chmod(const char *path, mode_t mode) noexcept
{
    static auto *const real = libraryFunction<int(const char *, mode_t)>("chmod");
    return passOn("chmod", ofPath(path), {.changes = true, .path = path},
                  [&](bool) { return real(path, mode); });
}

int fchmodat(int folder, const char *path, mode_t mode, int flags) noexcept
{
    static auto *const real = libraryFunction<int(int, const char *, mode_t, int)>("fchmodat");
    return passOn("fchmodat", ofPathAt(folder, path), {.changes = true},
                  [&](bool) { return real(folder, path, mode, flags); });
}

int utimensat(int folder, const char *path, const struct timespec times[2], int flags) noexcept
{
    static auto *const real =
        libraryFunction<int(int, const char *, const struct timespec *, int)>("utimensat");
    return passOn("utimensat", ofPathAt(folder, path), {.changes = true},
                  [&](bool) { return real(folder, path, times, flags); });
}

int truncate(const char *path, off_t size) noexcept
{
    static auto *const real = libraryFunction<int(const char *, off_t)>("truncate");
    return passOn("truncate", ofPath(path), {.changes = true, .path = path},
                  [&](bool) { return real(path, size); });
}

} // extern "C"
