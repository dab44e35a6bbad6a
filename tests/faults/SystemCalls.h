// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace quillmark::test {

/// What is known of one call that this process made of the system.
struct SystemCall {
    std::string function; ///< the C library's name of it: "open", "rename", "fork"
    std::string subject;  ///< what it concerned, as the labels of WatchedCalls say it
    bool changes = false; ///< creates, writes to, renames or removes the subject
    bool failed = false;
    /// The file behind the descriptor that was used, or what a path leads to afterwards;
    /// zeros where there is none.
    std::pair<dev_t, ino_t> file{};
    /// The same of the folder that holds the entry which a path names.
    std::pair<dev_t, ino_t> folder{};
};

/// One call that is to fail, once; or all calls of a kind.
struct Fault {
    static constexpr int always = 0;

    std::string function;
    std::string subject; ///< empty for any
    int occurrence = 1;  ///< counted from 1 among the calls of this function on this subject
    int error = 0;       ///< the errno; 0 has the call move half of the bytes asked for only
};

/// Watches the calls of this process, in all its threads and in all libraries, for as long as
/// it lives: those that concern what lies below one of the paths given or a descriptor opened
/// there, all that concern a child, and those that make a thread. Those of the child itself, from
/// fork() to its program, come last, with the subject "child itself".
///
/// It stands on functions of the C library's names that an executable with this source in it
/// exports, and which therefore are found before the library's own. One at a time.
class WatchedCalls
{
public:
    /// A path and the label under which it stands in `subject`. Random parts of names below it
    /// are written as numbers, in the order of their appearance. Paths are absolute and without
    /// links.
    using Labels = std::vector<std::pair<std::filesystem::path, std::string>>;

    explicit WatchedCalls(Labels labels, std::vector<Fault> faults = {});
    WatchedCalls(const WatchedCalls &) = delete;
    WatchedCalls &operator=(const WatchedCalls &) = delete;
    ~WatchedCalls();

    /// The calls until now, in their order.
    std::vector<SystemCall> calls() const;

    /// Whether all the faults came about.
    bool faultsMet() const;
};

} // namespace quillmark::test
