// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// Stands before the C library's functions for threads, and for processes and their pipes.

#include "faults/ChildWatch.h"

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdarg>

using namespace quillmark::test::watch;

namespace {

/// The library's functions that a child calls before it becomes its program. They are looked up
/// before the fork: the child may not ask the linker, which has locks.
struct LibraryForChild {
    int (*prctl)(int, ...) = libraryFunction<int(int, ...)>("prctl");
    int (*dup2)(int, int) = libraryFunction<int(int, int)>("dup2");
    int (*execve)(const char *, char *const *, char *const *) =
        libraryFunction<int(const char *, char *const *, char *const *)>("execve");
    int (*setAction)(int, const struct sigaction *, struct sigaction *) =
        libraryFunction<int(int, const struct sigaction *, struct sigaction *)>("sigaction");
    int (*sigprocmask)(int, const sigset_t *, sigset_t *) =
        libraryFunction<int(int, const sigset_t *, sigset_t *)>("sigprocmask");
    int (*getrlimit)(__rlimit_resource_t, struct rlimit *) =
        libraryFunction<int(__rlimit_resource_t, struct rlimit *)>("getrlimit");
    int (*setrlimit)(__rlimit_resource_t, const struct rlimit *) =
        libraryFunction<int(__rlimit_resource_t, const struct rlimit *)>("setrlimit");
};

const LibraryForChild &library()
{
    static const LibraryForChild found;
    return found;
}

/// A call that is nobody's business but a child's.
template <typename Call>
int ofChildAlone(const char *function, Call call)
{
    return isChild() ? passOnInChild(function, [&](bool) { return call(); }) : call();
}

} // namespace

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
int pthread_create(pthread_t *thread, const pthread_attr_t *attributes, void *(*start)(void *),
                   void *argument) noexcept
{
    static auto *const real =
        libraryFunction<int(pthread_t *, const pthread_attr_t *, void *(*)(void *), void *)>(
            "pthread_create");
    const Subject subject = ofChild("thread");
    const Order order = subject ? orderFor("pthread_create", subject) : Order{};
    if (subject) {
        report("pthread_create", subject, order.error != 0, {});
    }
    return order.error != 0 ? order.error : real(thread, attributes, start, argument);
}

pid_t fork() noexcept
{
    static auto *const real = libraryFunction<pid_t()>("fork");
    library();
    prepareDataCallsForChild();
    prepareFileCallsForChild();
    const Subject subject = ofChild("child");
    const Order order = subject ? orderFor("fork", subject) : Order{};
    if (subject) {
        report("fork", subject, order.error != 0, {});
    }
    if (order.error != 0) {
        errno = order.error;
        return -1;
    }
    const pid_t pid = real();
    if (pid == 0 && subject) {
        becomeChild();
    }
    return pid;
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

int prctl(int option, ...) noexcept
{
    va_list arguments;
    va_start(arguments, option);
    const auto argument = va_arg(arguments, unsigned long);
    va_end(arguments);
    return ofChildAlone("prctl", [&] { return library().prctl(option, argument, 0UL, 0UL, 0UL); });
}

int dup2(int descriptor, int number) noexcept
{
    return ofChildAlone("dup2", [&] { return library().dup2(descriptor, number); });
}

int execve(const char *program, char *const arguments[], char *const environment[]) noexcept
{
    return ofChildAlone("execve",
                        [&] { return library().execve(program, arguments, environment); });
}

int sigaction(int signal, const struct sigaction *action, struct sigaction *before) noexcept
{
    return ofChildAlone("sigaction", [&] { return library().setAction(signal, action, before); });
}

int sigprocmask(int how, const sigset_t *signals, sigset_t *before) noexcept
{
    return ofChildAlone("sigprocmask", [&] { return library().sigprocmask(how, signals, before); });
}

int getrlimit(__rlimit_resource_t resource, struct rlimit *limit) noexcept
{
    return ofChildAlone("getrlimit", [&] { return library().getrlimit(resource, limit); });
}

int setrlimit(__rlimit_resource_t resource, const struct rlimit *limit) noexcept
{
    return ofChildAlone("setrlimit", [&] { return library().setrlimit(resource, limit); });
}

} // extern "C"
