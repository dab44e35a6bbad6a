// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/Tool.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillmark::test {
namespace {

std::string readAll(int descriptor)
{
    std::string all;
    std::array<char, 65536> part{};
    for (;;) {
        const ssize_t count = ::read(descriptor, part.data(), part.size());
        if (count > 0) {
            all.append(part.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return all;
        }
    }
}

} // namespace

std::string runTool(const std::string &program, const std::vector<std::string> &arguments,
                    const std::filesystem::path &folder)
{
    std::vector<char *> argv{const_cast<char *>(program.c_str())};
    for (const std::string &argument : arguments) {
        argv.push_back(const_cast<char *>(argument.c_str()));
    }
    argv.push_back(nullptr);

    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), program);
    }
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    ::posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
    pid_t pid = -1;
    const int failure =
        ::posix_spawnp(&pid, program.c_str(), &actions, nullptr, argv.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    std::string output = failure == 0 ? readAll(ends[0]) : std::string();
    ::close(ends[0]);
    if (failure != 0) {
        throw std::system_error(failure, std::generic_category(), program);
    }
    int status = 0;
    while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    if (status != 0) {
        throw std::runtime_error(program + " failed");
    }
    return output;
}

} // namespace quillmark::test
