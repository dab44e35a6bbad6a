// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "embedding/ChildStart.h"

#include "base/Uninterrupted.h"
#include "base/UniqueFd.h"

#include <fcntl.h>
#include <signal.h> // NOLINT(modernize-deprecated-headers): sigfillset is not in <csignal>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>

namespace quillmark {
namespace {

// --- In the child, between fork and exec ---------------------------------------

// The child is a copy of this process with one of its threads: another one may have held any
// lock at the moment of the copy. Nothing here but what is safe in a signal handler
// (signal-safety(7)): no allocation, no exception.

/// What the child has to know, made before the fork.
struct Start {
    const char *program = nullptr;
    char *const *arguments = nullptr;
    ChildDescriptors descriptors;
    int report = -1; ///< where the error number goes that kept the program from starting
    pid_t parent = 0;
};

[[noreturn]] void giveUp(const Start &start, int code)
{
    constexpr int notStarted = 127; // as shells have it
    const ssize_t told = uninterrupted([&] { return ::write(start.report, &code, sizeof code); });
    if (told != sizeof code) {
        // Without a report it passes for a program that ended: what it said has to tell.
        constexpr std::string_view words = "The program could not be started.\n";
        [[maybe_unused]] const ssize_t said =
            ::write(start.descriptors.errors, words.data(), words.size());
    }
    ::_exit(notStarted);
}

/// Has the kernel end the child with its parent. exiftool meets SIGINT by removing the file
/// that it is at and leaves with all others whole; before it can, SIGINT ends it at once.
void endWithParent(const Start &start)
{
    if (::prctl(PR_SET_PDEATHSIG, SIGINT) != 0) {
        giveUp(start, errno);
    }
    if (::getppid() != start.parent) { // it was too late to be told
        giveUp(start, ESRCH);
    }
}

/// Hands a descriptor on under a number.
void give(const Start &start, int descriptor, int number)
{
    // dup2 does nothing for equal numbers, and the descriptor would be closed by exec.
    const int result = uninterrupted([&] {
        return descriptor == number ? ::fcntl(descriptor, F_SETFD, 0) : ::dup2(descriptor, number);
    });
    if (result < 0) {
        giveUp(start, errno);
    }
}

/// Every signal as a program finds it that a shell starts, whatever this process ignores or
/// handles.
void resetSignals()
{
    struct sigaction byDefault = {};
    byDefault.sa_handler = SIG_DFL;
    for (int number = 1; number < NSIG; ++number) {
        ::sigaction(number, &byDefault, nullptr); // refused for two that are never handled
    }
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

/// Linux gives the arguments of a new program a quarter of its soft stack limit, 6 MB at
/// most (fs/exec.c, bprm_stack_limits): 2 MB under the usual limit of 8 MB, which a folder
/// of some ten thousand scans exceeds. 64 MB, rather than the 24 MB that suffice, leave the
/// child a stack to work with below its arguments; a number, since "unlimited" would change
/// its memory layout.
void makeRoomForArguments()
{
    rlimit limit{};
    if (::getrlimit(RLIMIT_STACK, &limit) != 0) {
        return;
    }
    const rlim_t wanted = std::min<rlim_t>(limit.rlim_max, rlim_t{64} << 20U);
    if (limit.rlim_cur < wanted) {
        limit.rlim_cur = wanted;
        ::setrlimit(RLIMIT_STACK, &limit);
    }
}

[[noreturn]] void becomeProgram(const Start &start)
{
    endWithParent(start);
    give(start, start.descriptors.output, STDOUT_FILENO);
    give(start, start.descriptors.errors, STDERR_FILENO);
    if (start.descriptors.kept) {
        give(start, *start.descriptors.kept, *start.descriptors.kept);
    }
    makeRoomForArguments();
    resetSignals();
    ::execve(start.program, start.arguments, ::environ);
    giveUp(start, errno);
}

// --- In this process -------------------------------------------------------------

/// No signal reaches this thread while this lives: handlers of this process are not to run
/// in its copy.
class SignalsHeld
{
public:
    SignalsHeld()
    {
        sigset_t all;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    SignalsHeld(const SignalsHeld &) = delete;
    SignalsHeld &operator=(const SignalsHeld &) = delete;
    ~SignalsHeld() { ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }

private:
    sigset_t m_before{};
};

/// The error number that the child reported before it gave up; 0 where exec closed the pipe.
int reportedError(int report)
{
    int code = 0;
    ssize_t count = 0;
    do {
        count = ::read(report, &code, sizeof code);
    } while (count < 0 && errno == EINTR);
    return count == sizeof code ? code : 0;
}

void reap(pid_t pid)
{
    while (::waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
    }
}

} // namespace

std::system_error launchError(const std::filesystem::path &program, int code)
{
    std::string sentence = "\"" + program.native() + "\" could not be started";
    if (code == E2BIG) {
        sentence += ", because the names of the files or the texts are too long together";
    }
    return {code, std::generic_category(), sentence};
}

pid_t startChild(const std::filesystem::path &program, const std::vector<std::string> &arguments,
                 const ChildDescriptors &descriptors)
{
    // argv is an array of char * for C's sake: nobody writes through it.
    std::vector<char *> argv;
    argv.reserve(arguments.size() + 2);
    argv.push_back(const_cast<char *>(program.c_str()));
    for (const std::string &argument : arguments) {
        argv.push_back(const_cast<char *>(argument.c_str()));
    }
    argv.push_back(nullptr);

    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw launchError(program, errno);
    }
    const UniqueFd report(ends[0]);
    UniqueFd reporting(ends[1]);
    const Start start{program.c_str(), argv.data(), descriptors, reporting.get(), ::getpid()};

    pid_t pid = -1;
    int failure = 0;
    {
        const SignalsHeld held;
        // Not posix_spawn, which cannot tie the child's life to this process.
        pid = ::fork();
        if (pid == 0) {
            becomeProgram(start);
        }
        failure = errno;
    }
    if (pid < 0) {
        throw launchError(program, failure);
    }
    reporting.reset();
    if (const int code = reportedError(report.get())) {
        reap(pid);
        throw launchError(program, code);
    }
    return pid;
}

} // namespace quillmark
