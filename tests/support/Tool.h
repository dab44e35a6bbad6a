// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace quillmark::test {

/// Runs a program that is named by its path, or looked for in PATH, in a folder, and gives what
/// it wrote to the standard output, or throws where it cannot be run or fails.
///
/// Not by QProcess: it lets the child run in the memory of the test, and the thread sanitizer
/// takes the test for that child and looks at nothing from then on.
std::string runTool(const std::string &program, const std::vector<std::string> &arguments,
                    const std::filesystem::path &folder = ".");

} // namespace quillmark::test
