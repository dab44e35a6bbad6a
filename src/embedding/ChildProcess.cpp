// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "embedding/ChildProcess.h"

#include "base/UniqueFd.h"
#include "embedding/ChildStart.h"
#include "embedding/ChildStreams.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <optional>
#include <system_error>
#include <utility>

namespace quillmark {
namespace {

// --- Its streams ---------------------------------------------------------------

struct Pipe {
    UniqueFd readEnd;
    UniqueFd writeEnd;
};

Pipe makePipe(const std::filesystem::path &program)
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw launchError(program, errno);
    }
    return {UniqueFd(ends[0]), UniqueFd(ends[1])};
}

// --- The child -----------------------------------------------------------------

/// How often a child that is stopped (SIGSTOP, SIGTTIN and their like) is woken. Nobody can
/// wake it from the window, so the run would never end; and what stops again and again, such as
/// a program that insists on a terminal, is ended.
constexpr int maximumWakings = 10;

/// A started child, which is waited for in any case: it never stays a zombie.
class Child
{
public:
    explicit Child(pid_t pid) : m_pid(pid) {}
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;
    ~Child() { wait(); }

    /// Whether it has ended, without waiting for that.
    bool hasEnded()
    {
        look(WNOHANG);
        return m_pid == 0;
    }

    /// Waits for its end. Gives the exit status as ChildResult has it, or nothing where the
    /// system does not keep it: a process that ignores SIGCHLD has no children to wait for
    /// (ECHILD).
    std::optional<int> wait()
    {
        while (m_pid != 0) {
            look(0);
        }
        return m_status;
    }

private:
    /// Takes one change of the child's state, if there is one.
    void look(int options)
    {
        if (m_pid == 0) {
            return;
        }
        int status = 0;
        const pid_t changed = ::waitpid(m_pid, &status, options | WUNTRACED);
        if (changed == 0 || (changed < 0 && errno == EINTR)) {
            return;
        }
        if (changed > 0 && WIFSTOPPED(status)) {
            ::kill(m_pid, m_wakings++ < maximumWakings ? SIGCONT : SIGKILL);
            return;
        }
        m_pid = 0;
        if (changed > 0) {
            m_status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        }
    }

    pid_t m_pid;
    int m_wakings = 0;
    std::optional<int> m_status;
};

/// How long a silent child is left before it is looked after: neither that it is stopped nor
/// that it ended while others hold on to its pipes shows in these.
constexpr std::chrono::milliseconds patience{500};

bool holdsNul(const std::string &argument)
{
    return argument.find('\0') != std::string::npos;
}

} // namespace

ChildResult runChild(const std::filesystem::path &program,
                     const std::vector<std::string> &arguments)
{
    return runChildKeeping(std::nullopt, program, arguments);
}

ChildResult runChildKeeping(std::optional<int> descriptor, const std::filesystem::path &program,
                            const std::vector<std::string> &arguments)
{
    // It would end the argument there, and another file than the one meant might be named.
    if (holdsNul(program.native()) || std::any_of(arguments.begin(), arguments.end(), holdsNul)) {
        throw launchError(program, EINVAL);
    }

    Pipe outputPipe = makePipe(program);
    Pipe errorPipe = makePipe(program);
    // Declared before the streams: when those are gone, the child cannot block on them.
    Child child(startChild(program, arguments,
                           {.output = outputPipe.writeEnd.get(),
                            .errors = errorPipe.writeEnd.get(),
                            .kept = descriptor}));
    ChildStreams streams(std::move(outputPipe.readEnd), std::move(errorPipe.readEnd));
    outputPipe.writeEnd.reset();
    errorPipe.writeEnd.reset();

    while (streams.readSome(patience)) {
        if (child.hasEnded()) {
            streams.readRest();
            break;
        }
    }
    const std::optional<int> status = child.wait();
    if (!status) {
        throw std::system_error(ECHILD, std::generic_category(),
                                "\"" + program.native() + "\" ended in an unknown way");
    }
    return {streams.takeOutput(), streams.takeErrors(), *status, streams.errorsAreCut()};
}

} // namespace quillmark
