// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/UniqueFd.h"

#include <filesystem>

namespace quillmark {

/// A hidden folder in another one, in which a copy comes into being before it takes its
/// place there. What stands in it at the end goes with it. It is locked while it is in use
/// (flock(2)), by which one is told from what a killed process left behind.
class Workplace
{
public:
    /// Throws std::system_error.
    explicit Workplace(const std::filesystem::path &folder);
    Workplace(const Workplace &) = delete;
    Workplace &operator=(const Workplace &) = delete;
    ~Workplace();

    std::filesystem::path copy() const { return m_path / "copy"; }
    /// Where what the copy replaces may stand until the copy has its place.
    std::filesystem::path replaced() const { return m_path / "replaced"; }
    /// Leaves it there for good: it is all that is left of what could not return to its place.
    void keepReplaced() { m_keepsReplaced = true; }

private:
    std::filesystem::path m_path;
    UniqueFd m_lock;
    bool m_keepsReplaced = false;
};

/// Lets the owner do everything with a directory. Anything else, a link to one too, stays as it
/// is, and so does what cannot be changed.
void makeWritable(const std::filesystem::path &directory);

/// Removes the workplaces in a folder that nobody uses any more, with the unfinished copies
/// in them. One that also holds what was being replaced stays: that may be all there is of
/// it. So do those whose use cannot be told, where the file system has no locks.
void removeAbandonedWorkplaces(const std::filesystem::path &folder);

} // namespace quillmark
