// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// Stands before the C library's functions that move the bytes of files.

#include "faults/ChildWatch.h"

#include <sys/mman.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

// Both names under which the library has a function stand here: which one a caller has depends on
// how it was built.

using namespace quillmark::test::watch;

namespace {

/// Half of a count of bytes, of which at least one is left.
std::size_t halfOf(std::size_t count)
{
    return std::max<std::size_t>(count / 2, std::min<std::size_t>(count, 1));
}

/// Half of what can be read from a file, where more than that is asked for.
std::size_t halfOf(std::size_t count, int file)
{
    static auto *const real = libraryFunction<int(int, struct stat *)>("fstat");
    struct stat status {};
    if (real(file, &status) == 0 && S_ISREG(status.st_mode)) {
        count = std::min(count, static_cast<std::size_t>(status.st_size));
    }
    return halfOf(count);
}

// A child calls it too, before it becomes its program.
ssize_t (*libraryWrite)(int, const void *, std::size_t) = nullptr;

} // namespace

namespace quillmark::test::watch {

void prepareDataCallsForChild()
{
    libraryWrite = libraryFunction<ssize_t(int, const void *, std::size_t)>("write");
}

} // namespace quillmark::test::watch

extern "C" {

ssize_t read(int descriptor, void *buffer, std::size_t count)
{
    static auto *const real = libraryFunction<decltype(read)>("read");
    return passOn("read", ofDescriptor(descriptor), {.descriptor = descriptor}, [&](bool halved) {
        return real(descriptor, buffer, halved ? halfOf(count, descriptor) : count);
    });
}

ssize_t pread(int descriptor, void *buffer, std::size_t count, off_t offset)
{
    static auto *const real = libraryFunction<decltype(pread)>("pread");
    return passOn("pread", ofDescriptor(descriptor), {.descriptor = descriptor}, [&](bool halved) {
        return real(descriptor, buffer, halved ? halfOf(count, descriptor) : count, offset);
    });
}

ssize_t pread64(int descriptor, void *buffer, std::size_t count, off64_t offset)
{
    return pread(descriptor, buffer, count, offset);
}

ssize_t pwrite(int descriptor, const void *buffer, std::size_t count, off_t offset)
{
    static auto *const real = libraryFunction<decltype(pwrite)>("pwrite");
    return passOn("pwrite", ofDescriptor(descriptor), {.changes = true, .descriptor = descriptor},
                  [&](bool halved) {
                      return real(descriptor, buffer, halved ? halfOf(count) : count, offset);
                  });
}

ssize_t pwrite64(int descriptor, const void *buffer, std::size_t count, off64_t offset)
{
    return pwrite(descriptor, buffer, count, offset);
}

off_t lseek(int descriptor, off_t offset, int whence) noexcept
{
    static auto *const real = libraryFunction<off_t(int, off_t, int)>("lseek");
    return passOn("lseek", ofDescriptor(descriptor), {.descriptor = descriptor},
                  [&](bool) { return real(descriptor, offset, whence); });
}

off64_t lseek64(int descriptor, off64_t offset, int whence) noexcept
{
    return lseek(descriptor, offset, whence);
}

ssize_t write(int descriptor, const void *buffer, std::size_t count)
{
    const auto call = [&](bool halved) {
        return libraryWrite(descriptor, buffer, halved ? halfOf(count) : count);
    };
    if (isChild()) {
        return passOnInChild("write", call);
    }
    if (libraryWrite == nullptr) {
        prepareDataCallsForChild();
    }
    return passOn("write", ofDescriptor(descriptor), {.changes = true, .descriptor = descriptor},
                  call);
}

ssize_t copy_file_range(int from, off64_t *fromOffset, int to, off64_t *toOffset, std::size_t count,
                        unsigned int flags)
{
    static auto *const real = libraryFunction<decltype(copy_file_range)>("copy_file_range");
    return passOn("copy_file_range", ofDescriptor(to), {.changes = true, .descriptor = to},
                  [&](bool halved) {
                      return real(from, fromOffset, to, toOffset,
                                  halved ? halfOf(count, from) : count, flags);
                  });
}

ssize_t sendfile(int to, int from, off_t *offset, std::size_t count) noexcept
{
    static auto *const real = libraryFunction<ssize_t(int, int, off_t *, std::size_t)>("sendfile");
    return passOn("sendfile", ofDescriptor(to), {.changes = true, .descriptor = to},
                  [&](bool halved) { return real(to, from, offset, halved ? count / 2 : count); });
}

void *mmap64(void *address, std::size_t size, int protection, int flags, int descriptor,
             off64_t offset) noexcept
{
    static auto *const real =
        libraryFunction<void *(void *, std::size_t, int, int, int, off64_t)>("mmap64");
    const Subject subject = descriptor >= 0 ? ofDescriptor(descriptor) : std::nullopt;
    const Order order = subject ? orderFor("mmap", subject) : Order{};
    void *result = MAP_FAILED;
    if (order.error == 0) {
        result = real(address, size, protection, flags, descriptor, offset);
    }
    if (subject) {
        const int error = order.error != 0 ? order.error : errno;
        report("mmap", subject, result == MAP_FAILED, {.descriptor = descriptor});
        errno = error;
    }
    return result;
}

void *mmap(void *address, std::size_t size, int protection, int flags, int descriptor,
           off_t offset) noexcept
{
    return mmap64(address, size, protection, flags, descriptor, offset);
}

} // extern "C"
