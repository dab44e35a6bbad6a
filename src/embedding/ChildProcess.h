// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace quillmark {

/// What a child process left behind.
struct ChildResult {
    std::string output; ///< the first 8 MiB of its standard output, as bytes
    std::string errors; ///< the first 8 MiB of its standard error, as bytes
    /// Its exit status, 0 to 255. For a child that a signal ended, 128 and the signal's
    /// number, which is how shells report it: never 0, so never mistaken for a success.
    int status = 0;
    bool errorsAreCut = false; ///< whether it wrote more errors than are here
};

/// Runs a program to its end, blocking the calling thread, and gives what it wrote. The
/// arguments (without the program's own name) arrive byte by byte as they are: no shell
/// sees them. Environment, working folder and standard input are the caller's; signals have
/// their default handling. About 6 MB of arguments fit, 128 KiB in a single one.
///
/// The child does not outlive this process: when that ends, however it does, the child
/// receives SIGINT.
///
/// Output is read while the child runs, so that it may be of any length, though only its
/// beginning is kept; a stream that cannot be read counts as empty. The child's end is the end,
/// whoever else holds its pipes. A child that is stopped is continued, and killed at its eleventh
/// stop. A non-zero status is a result, not a failure. Throws std::system_error, whose what() is a
/// sentence that names the program, where the child cannot be started. Any thread.
ChildResult runChild(const std::filesystem::path &program,
                     const std::vector<std::string> &arguments);

/// Does the same, and leaves the child an open descriptor of this process, if one is given,
/// under its number.
ChildResult runChildKeeping(std::optional<int> descriptor, const std::filesystem::path &program,
                            const std::vector<std::string> &arguments);

} // namespace quillmark
