// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/CodeRegion.h"
#include "detection/FrameLooks.h"
#include "detection/LumaView.h"

#include <cstddef>
#include <map>
#include <vector>

namespace quillmark {

/// A frame at parts of its size, and where it is busy there; each made when it is first asked for.
/// Throws std::bad_alloc.
class FramePyramid
{
public:
    /// The looks' copies are used where there are any. Both must outlive it.
    FramePyramid(const LumaView &frame, FrameLooks &looks) : m_frame(frame), m_looks(looks) {}

    /// Whether the frame at 1/scale of its size is large enough for a code to be seen.
    bool isScannedAt(int scale) const;
    std::size_t pixelsAt(int scale) const;

    LumaView copy(int scale);

    /// Where a copy is busy as a code is, in pixels of the copy.
    const std::vector<PixelArea> &regions(int scale);

private:
    LumaView m_frame;
    FrameLooks &m_looks;
    std::map<int, LumaImage> m_copies; ///< beyond those of m_looks
    std::map<int, std::vector<PixelArea>> m_regions;
};

} // namespace quillmark
