// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "embedding/ChildProcess.h"

#include "base/UniqueFd.h"
#include "embedding/ChildStreams.h"

#include <fcntl.h>
#include <signal.h> // NOLINT(modernize-deprecated-headers): sigfillset is not in <csignal>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <mutex>
#include <optional>
#include <system_error>
#include <utility>

namespace quillmark {
namespace {

// --- Failures ----------------------------------------------------------------

/// The sentence for the user, which the reason that the system gives completes.
std::system_error launchError(const std::filesystem::path &program, int code)
{
    std::string sentence = "\"" + program.native() + "\" could not be started";
    if (code == E2BIG) {
        sentence += ", because the names of the files or the texts are too long together";
    }
    return {code, std::generic_category(), sentence};
}

/// For calls that give an error number (posix_spawn and its family do) and not -1.
void check(int code, const std::filesystem::path &program)
{
    if (code != 0) {
        throw launchError(program, code);
    }
}

// --- What the child starts with ------------------------------------------------

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

/// posix_spawn's list of what to do with descriptors.
class FileActions
{
public:
    explicit FileActions(const std::filesystem::path &program)
    {
        check(::posix_spawn_file_actions_init(&m_actions), program);
    }
    FileActions(const FileActions &) = delete;
    FileActions &operator=(const FileActions &) = delete;
    ~FileActions() { ::posix_spawn_file_actions_destroy(&m_actions); }

    posix_spawn_file_actions_t *get() { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions{};
};

/// posix_spawn's attributes, set so that the child handles every signal as a program does
/// that is started from a shell, whatever this process ignores or blocks.
class DefaultSignals
{
public:
    explicit DefaultSignals(const std::filesystem::path &program)
    {
        check(::posix_spawnattr_init(&m_attributes), program);
        sigset_t signals;
        ::sigemptyset(&signals);
        ::posix_spawnattr_setsigmask(&m_attributes, &signals);
        ::sigfillset(&signals);
        ::posix_spawnattr_setsigdefault(&m_attributes, &signals);
        ::posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    DefaultSignals(const DefaultSignals &) = delete;
    DefaultSignals &operator=(const DefaultSignals &) = delete;
    ~DefaultSignals() { ::posix_spawnattr_destroy(&m_attributes); }

    const posix_spawnattr_t *get() const { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes{};
};

/// Makes room for long argument lists while it lives.
///
/// Linux gives the arguments of a new program a quarter of its soft stack limit, 6 MB at
/// most (fs/exec.c, bprm_stack_limits): 2 MB under the usual limit of 8 MB, which a folder
/// of some ten thousand scans exceeds. The limit that counts is the child's at execve, and
/// the only way to set it there without running code of our own in a forked copy of a
/// process with many threads is to let the child inherit it. So this process' soft limit
/// is raised for the moment of the spawn. That is harmless meanwhile: it allows the main
/// thread's stack to grow further, and other threads' stacks were measured at the start.
/// 64 MB, rather than the 24 MB that suffice for the 6 MB, leave the child a stack to work
/// with below its arguments; a number, since "unlimited" would change its memory layout.
///
/// Limits belong to the process, hence the lock: without it, two of these at a time could
/// restore the raised limit.
class ArgumentRoom
{
public:
    ArgumentRoom() : m_lock(mutex())
    {
        rlimit limit{};
        if (::getrlimit(RLIMIT_STACK, &limit) != 0) {
            return;
        }
        const rlim_t wanted = std::min<rlim_t>(limit.rlim_max, rlim_t{64} << 20U);
        if (limit.rlim_cur < wanted) {
            const rlimit raised{wanted, limit.rlim_max};
            if (::setrlimit(RLIMIT_STACK, &raised) == 0) {
                m_before = limit;
            }
        }
    }
    ArgumentRoom(const ArgumentRoom &) = delete;
    ArgumentRoom &operator=(const ArgumentRoom &) = delete;
    ~ArgumentRoom()
    {
        if (m_before) {
            ::setrlimit(RLIMIT_STACK, &*m_before);
        }
    }

private:
    static std::mutex &mutex()
    {
        static std::mutex instance;
        return instance;
    }

    std::lock_guard<std::mutex> m_lock;
    std::optional<rlimit> m_before;
};

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

pid_t spawn(const std::filesystem::path &program, const std::vector<std::string> &arguments,
            const Pipe &output, const Pipe &errors)
{
    FileActions descriptors(program);
    check(
        ::posix_spawn_file_actions_adddup2(descriptors.get(), output.writeEnd.get(), STDOUT_FILENO),
        program);
    check(
        ::posix_spawn_file_actions_adddup2(descriptors.get(), errors.writeEnd.get(), STDERR_FILENO),
        program);
    const DefaultSignals signals(program);

    // argv is an array of char * for C's sake: nobody writes through it.
    std::vector<char *> argv;
    argv.reserve(arguments.size() + 2);
    argv.push_back(const_cast<char *>(program.c_str()));
    for (const std::string &argument : arguments) {
        argv.push_back(const_cast<char *>(argument.c_str()));
    }
    argv.push_back(nullptr);

    const ArgumentRoom room;
    pid_t pid = 0;
    check(::posix_spawn(&pid, program.c_str(), descriptors.get(), signals.get(), argv.data(),
                        ::environ),
          program);
    return pid;
}

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
    // It would end the argument there, and another file than the one meant might be named.
    if (holdsNul(program.native()) || std::any_of(arguments.begin(), arguments.end(), holdsNul)) {
        throw launchError(program, EINVAL);
    }

    Pipe outputPipe = makePipe(program);
    Pipe errorPipe = makePipe(program);
    // Declared before the streams: when those are gone, the child cannot block on them.
    Child child(spawn(program, arguments, outputPipe, errorPipe));
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
    return {streams.takeOutput(), streams.takeErrors(), *status};
}

} // namespace quillmark
