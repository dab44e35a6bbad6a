// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// Stands before the C library's functions for processes and their pipes.

#include "faults/CallWatch.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

using namespace quillmark::test::watch;

extern "C" {

int pipe2(int ends[2], int flags) noexcept
{
    static auto *const real = libraryFunction<int(int *, int)>("pipe2");
    const int result =
        passOn("pipe2", ofChild("child"), {}, [&](bool) { return real(ends, flags); });
    if (result == 0) {
        openedPipe(ends);
    }
    return result;
}

/// Gives the error itself.
int posix_spawn(pid_t *pid, const char *path, const posix_spawn_file_actions_t *actions,
                const posix_spawnattr_t *attributes, char *const arguments[],
                char *const environment[])
{
    static auto *const real = libraryFunction<decltype(posix_spawn)>("posix_spawn");
    const Subject subject = ofChild("child");
    const Order order = subject ? orderFor("posix_spawn", subject) : Order{};
    // Written down first: from here on the child may be at work.
    if (subject) {
        report("posix_spawn", subject, order.error != 0, {});
    }
    return order.error != 0 ? order.error
                            : real(pid, path, actions, attributes, arguments, environment);
}

pid_t fork() noexcept
{
    static auto *const real = libraryFunction<pid_t()>("fork");
    const Subject subject = ofChild("child");
    const Order order = subject ? orderFor("fork", subject) : Order{};
    if (subject) {
        report("fork", subject, order.error != 0, {});
    }
    if (order.error != 0) {
        errno = order.error;
        return -1;
    }
    return real();
}

int poll(struct pollfd *polled, nfds_t count, int patience)
{
    static auto *const real = libraryFunction<decltype(poll)>("poll");
    Subject subject;
    for (nfds_t i = 0; i < count && !subject; ++i) {
        subject = polled[i].fd >= 0 ? ofDescriptor(polled[i].fd) : std::nullopt;
    }
    return passOn("poll", subject ? Subject("child's streams") : std::nullopt, {},
                  [&](bool) { return real(polled, count, patience); });
}

pid_t waitpid(pid_t pid, int *status, int options)
{
    static auto *const real = libraryFunction<decltype(waitpid)>("waitpid");
    const Subject subject = ofChild("child");
    const Order order = subject ? orderFor("waitpid", subject) : Order{};
    if (order.error == EINTR) {
        report("waitpid", subject, true, {});
        errno = order.error;
        return -1;
    }
    if (order.error != 0) {
        // A child that cannot be waited for has ended, and nobody kept its status.
        real(pid, status, 0);
        report("waitpid", subject, true, {});
        errno = order.error;
        return -1;
    }
    const pid_t result = real(pid, status, options);
    const int error = errno;
    if (subject) {
        report("waitpid", subject, result < 0, {});
    }
    errno = error;
    return result;
}

int kill(pid_t pid, int signal) noexcept
{
    static auto *const real = libraryFunction<int(pid_t, int)>("kill");
    return passOn("kill", ofChild("child"), {}, [&](bool) { return real(pid, signal); });
}

int getrlimit(__rlimit_resource_t resource, struct rlimit *limit) noexcept
{
    static auto *const real =
        libraryFunction<int(__rlimit_resource_t, struct rlimit *)>("getrlimit");
    return passOn("getrlimit", ofChild("child"), {}, [&](bool) { return real(resource, limit); });
}

int setrlimit(__rlimit_resource_t resource, const struct rlimit *limit) noexcept
{
    static auto *const real =
        libraryFunction<int(__rlimit_resource_t, const struct rlimit *)>("setrlimit");
    return passOn("setrlimit", ofChild("child"), {}, [&](bool) { return real(resource, limit); });
}

} // extern "C"
