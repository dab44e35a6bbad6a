// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace quillmark {

/// Descriptors of this process that a child starts with.
struct ChildDescriptors {
    int output = -1; ///< becomes its standard output
    int errors = -1; ///< becomes its standard error
    /// Stays open in it under the same number, whatever its close-on-exec flag says here.
    std::optional<int> kept = {};
};

/// Why a program could not be started: a sentence for the user that names it, which the
/// reason that the system gives (an error number) completes.
std::system_error launchError(const std::filesystem::path &program, int code);

/// Starts a program with the arguments (without its own name) and gives its process id; the
/// caller is to wait for it. The child has every signal at its default, none blocked, and as
/// much room for arguments as Linux gives (about 6 MB).
///
/// The child does not outlive the thread that called this: it receives SIGINT when that
/// ends, however it does, so the caller is to stay until the child is gone. A child that
/// went on unseen after this process was killed would meet the next run at the same files.
///
/// Throws launchError where it cannot be started. Any thread.
pid_t startChild(const std::filesystem::path &program, const std::vector<std::string> &arguments,
                 const ChildDescriptors &descriptors);

} // namespace quillmark
