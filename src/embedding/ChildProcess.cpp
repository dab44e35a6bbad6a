// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "embedding/ChildProcess.h"

#include "base/UniqueFd.h"
#include "embedding/ChildStart.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
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

/// A started child, which is waited for in any case: it never stays a zombie.
class Child
{
public:
    explicit Child(pid_t pid) : m_pid(pid) {}
    Child(const Child &) = delete;
    Child &operator=(const Child &) = delete;
    ~Child()
    {
        if (m_pid > 0) {
            wait();
        }
    }

    /// The exit status as ChildResult has it, or nothing where the system does not keep it:
    /// a process that ignores SIGCHLD has no children to wait for (ECHILD).
    std::optional<int> wait()
    {
        int status = 0;
        const pid_t pid = std::exchange(m_pid, 0);
        while (::waitpid(pid, &status, 0) < 0) {
            if (errno != EINTR) {
                return std::nullopt;
            }
        }
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

private:
    pid_t m_pid;
};

// --- What it writes --------------------------------------------------------------

/// The reading end of one of the child's streams and what came through it.
struct Stream {
    UniqueFd source;
    std::string bytes;

    /// Reads once; closes the source at its end and, emptied, where it cannot be read.
    void readSome()
    {
        std::array<char, 65536> buffer; // NOLINT(*-member-init): read() fills it
        const ssize_t count = ::read(source.get(), buffer.data(), buffer.size());
        if (count > 0) {
            bytes.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0) {
            source.reset();
        } else if (errno != EINTR) {
            giveUp();
        }
    }

    void giveUp()
    {
        bytes.clear();
        source.reset();
    }
};

/// Reads both streams to their ends, whichever has something: a child that fills one pipe
/// while the other is waited for would wait for ever itself.
void drain(Stream &output, Stream &errors)
{
    while (output.source || errors.source) {
        // A closed source is -1, which poll() leaves out.
        std::array<pollfd, 2> polled{pollfd{output.source.get(), POLLIN, 0},
                                     pollfd{errors.source.get(), POLLIN, 0}};
        if (::poll(polled.data(), polled.size(), -1) < 0) {
            if (errno == EINTR) {
                continue;
            }
            output.giveUp();
            errors.giveUp();
            return;
        }
        if (polled[0].revents != 0) {
            output.readSome();
        }
        if (polled[1].revents != 0) {
            errors.readSome();
        }
    }
}

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
    Stream output{std::move(outputPipe.readEnd), {}};
    Stream errors{std::move(errorPipe.readEnd), {}};
    outputPipe.writeEnd.reset();
    errorPipe.writeEnd.reset();

    drain(output, errors);
    const std::optional<int> status = child.wait();
    if (!status) {
        throw std::system_error(ECHILD, std::generic_category(),
                                "\"" + program.native() + "\" ended in an unknown way");
    }
    return {std::move(output.bytes), std::move(errors.bytes), *status};
}

} // namespace quillmark
