// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/LumaView.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace quillmark {

/// A place that looks like the middle of a QR finder pattern.
struct FinderMark {
    double x = 0; ///< in pixels of the picture
    double y = 0;
    double module = 0;    ///< pixels to one module
    bool isDark = true;   ///< dark on light
    double threshold = 0; ///< grey level between the pattern's light and dark
    double contrast = 0;  ///< grey levels from its light to its dark
    int hits = 0;         ///< scanned rows that crossed it; none where it is only supposed
    int diagonals = 0;    ///< along how many of the two the pattern repeats; at least 1
};

/// The marks of a scan, those of neighbouring rows joined.
class MarkList
{
public:
    /// In the order of rows.
    void add(const FinderMark &mark);
    std::vector<FinderMark> take() { return std::move(m_marks); }
    const std::vector<FinderMark> &marks() const { return m_marks; }

private:
    std::vector<FinderMark> m_marks;
};

/// Looks for finder patterns in both polarities: runs of 1 : 1 : 3 : 1 : 1 along a row that
/// repeat down the column through their middle (ISO/IEC 18004 section 12 a). Light and dark
/// are told apart by the mean of the row's neighbourhood, so that slow changes of light do
/// not matter. Sees modules of about 1.8 to 7 pixels; larger ones are seen on a reduced
/// copy. Every `rowStep`th row is scanned, 1 or more: a pattern is three modules high in
/// its middle. Takes the memory of a few rows. Any thread.
class FinderScan
{
public:
    /// The picture must outlive it, and may come into being from the top meanwhile.
    FinderScan(const LumaView &picture, int rowStep);

    /// Goes as far as the picture's rows above `end` allow.
    void advance(int end);

    /// What was seen so far.
    const std::vector<FinderMark> &marks() const { return m_marks.marks(); }

    /// Goes to the end of the picture and gives what was seen: the same in however many steps
    /// it came there. To be called once.
    std::vector<FinderMark> finish();

private:
    LumaView m_picture;
    int m_rowStep;
    int m_next;
    std::vector<std::int16_t> m_flat;
    std::vector<std::uint16_t> m_scratch;
    std::vector<std::int32_t> m_edges;
    std::vector<float> m_places;
    std::vector<std::int32_t> m_found; ///< which of them may begin a pattern
    MarkList m_marks;
};

/// What such a scan sees on a picture that is there already.
std::vector<FinderMark> scanForFinders(const LumaView &picture, int rowStep);

} // namespace quillmark
