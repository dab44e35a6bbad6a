// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FinderScan.h"

#include <span>
#include <vector>

namespace quillmark {

/// The finder marks that several looks at one frame have found, each once, in pixels of the
/// frame: a pattern that one look misses is often seen by another.
class MarkPool
{
public:
    /// Takes in what one look found: of marks that are known already the look that saw more
    /// of them tells the place, and hits are added up. Of one look the 1000 marks of most hits
    /// are taken, and 1000 in all. Throws std::bad_alloc.
    void add(std::span<const FinderMark> marks);

    const std::vector<FinderMark> &marks() const { return m_marks; }

private:
    std::vector<FinderMark> m_marks;
};

} // namespace quillmark
