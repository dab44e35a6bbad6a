// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FinderScan.h"
#include "detection/LumaRows.h"
#include "detection/LumaView.h"
#include "detection/Reduce.h"
#include "detection/Sharpen.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace quillmark {

/// Copies with fewer pixels to a side show nothing of a code.
inline constexpr int leastScannedSide = 60;

/// Frames of no more pixels are sharpened as a whole beyond the smallest copy.
inline constexpr std::size_t mostSearched = 16'000'000;

/// The scans for finder patterns that go over a frame as a whole: at a ninth, a third and the
/// whole of its size, plain and sharpened, those first that cost least and find most. They can
/// follow a frame that is being decoded; what they see does not depend on it.
class FrameLooks
{
public:
    /// The frame must outlive it. Throws std::bad_alloc, as all of it does.
    explicit FrameLooks(const LumaView &frame);
    FrameLooks(const FrameLooks &) = delete;
    FrameLooks &operator=(const FrameLooks &) = delete;
    ~FrameLooks() = default;

    /// Goes with all looks as far as the frame's rows above `end` allow.
    void advance(int end);

    /// Goes with all looks while the frame's rows come, until they are there up to `end`. False
    /// where the frame was abandoned.
    bool follow(LumaRows &rows, int end);

    int count() const { return static_cast<int>(m_looks.size()); }
    /// The part of the frame's size at which a look is taken: 1, 3 or 9.
    int scale(int index) const { return m_looks[static_cast<std::size_t>(index)].scale; }

    /// What a look has seen so far, in pixels of the copy.
    const std::vector<FinderMark> &marksSoFar(int index) const
    {
        return m_looks[static_cast<std::size_t>(index)].scan.marks();
    }

    // From here on the whole frame is there.

    /// What a look sees, in pixels of the copy. To be called once for each.
    std::vector<FinderMark> marks(int index);
    /// The frame at 1/scale of its size, which is 1, 3 or 9.
    LumaView copy(int scale);

private:
    struct Look {
        int scale = 1;
        std::optional<Sharpening> sharpening;
        FinderScan scan;

        void advance(int end);
    };

    int advanceCopy(int scale, int end);
    LumaView copyBegun(int scale) const;
    void addLook(int scale, int quarters, int rowStep);

    LumaView m_frame;
    int m_followed = 0; ///< rows
    BoxReduction m_third;
    BoxReduction m_ninth;
    std::vector<Look> m_looks;
};

} // namespace quillmark
