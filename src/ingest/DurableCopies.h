// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/UniqueFd.h"
#include "ingest/CopyNames.h"
#include "ingest/Workplace.h"

#include <cstddef>
#include <filesystem>
#include <list>

namespace quillmark {

/// Copies files and directories one after another, each as copyTree() does. A copy takes the
/// place of what is at its destination only once it is whole and on disk: until then the old
/// entry stays, and no temporary file is left behind.
///
/// To wait for the disk after each copy would leave it without work while the next one is read.
/// So some copies wait for it together, and then take their places in the order in which they
/// were added. Results and failures are those of copies made one by one: where one fails, those
/// before it have their places, and nothing of it or of those after it is there.
///
/// The folders that hold the destinations are synchronised by syncDirectory(), once for many.
/// What was not finished goes with the object. Blocks; any thread, one at a time.
class DurableCopies
{
public:
    /// Throws FileError: of this copy, or of an earlier one.
    void add(const std::filesystem::path &source, const std::filesystem::path &destination);
    /// Returns when all that were added are in their places. Throws FileError.
    void finish();

    /// How many copies are on their way to the disk at most; each holds two open files, and the
    /// room of what it is going to replace.
    static constexpr std::size_t together = 64;

private:
    struct Copy {
        explicit Copy(CopyNames copyNames);
        CopyNames names;
        Workplace workplace;
        UniqueFd content;
    };

    void make(const CopyNames &names);

    std::list<Copy> m_copies;
};

} // namespace quillmark
