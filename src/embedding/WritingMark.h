// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/UniqueFd.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillmark {

/// Says to other processes that files in or below a folder are being written, for as long
/// as this object or a child process that has its descriptor lives, however they end.
///
/// Marks do not exclude each other: they tell whether something that looks left behind may
/// still be somebody's (a shared lock on the folder, flock(2)). Where the file system has no
/// such locks, nobody is seen.
class WritingMark
{
public:
    /// Marks the folder; one that cannot be opened stays unmarked. Waits while somebody else
    /// does the work of ifAlone(); a folder that is locked for two seconds is locked by somebody
    /// who does something else, and stays unmarked too.
    explicit WritingMark(const std::filesystem::path &folder);

    /// What a child is to keep open, so that the mark stands while it lives.
    std::optional<int> descriptor() const;

    /// Does the work, which is to be short and throw nothing, unless somebody else has marked
    /// the folder or it is unmarked.
    void ifAlone(const std::function<void()> &work);

private:
    void shareOrGiveUp();

    UniqueFd m_folder;
};

/// The folder nearest to all the files that has them in or below it; the files are absolute
/// and at least one.
std::string commonFolder(const std::vector<std::string> &files);

} // namespace quillmark
