// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/LumaView.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace quillmark {

/// The widths of five neighbouring runs of light and dark, in pixels and parts of them.
using FinderRuns = std::array<float, 5>;

/// The module width of runs that stand as 1 : 1 : 3 : 1 : 1, as they do across a QR finder
/// pattern (ISO/IEC 18004 section 12 a); spread ink and blur shift every edge by up to a
/// third of a module.
std::optional<float> finderModule(const FinderRuns &runs);

/// A line of pixels in a picture, in any of eight directions, read from a place outwards.
class PixelLine
{
public:
    /// Through (x, y), from one pixel to the next `step` bytes on, with so many pixels of
    /// the picture before and after it.
    PixelLine(const LumaView &picture, int x, int y, std::ptrdiff_t step, int before, int after)
        : m_place(picture.row(y) + x), m_step(step), m_before(before), m_after(after)
    {}

    int at(int offset) const { return m_place[m_step * offset]; }
    bool has(int offset) const { return offset >= -m_before && offset <= m_after; }

private:
    const std::uint8_t *m_place;
    std::ptrdiff_t m_step;
    int m_before;
    int m_after;
};

/// A way along such a line, in steps from its place, from one crossing of a threshold to the
/// next.
class LineWalk
{
public:
    /// In one direction (1 or -1), no farther than so many steps.
    LineWalk(const PixelLine &line, int direction, float threshold, float farthest)
        : m_line(line),
          m_direction(direction),
          m_threshold(threshold),
          m_limit(static_cast<int>(farthest)),
          m_level(static_cast<float>(line.at(0)) - threshold)
    {}

    /// Goes on to the next crossing, whose distance and that of the one before can be asked
    /// for then. False where there is none.
    bool goOn()
    {
        while (m_step < m_limit && m_line.has((m_step + 1) * m_direction)) {
            const float before = m_level;
            m_level = static_cast<float>(m_line.at(++m_step * m_direction)) - m_threshold;
            if ((m_level < 0) != (before < 0)) {
                m_previous = m_crossing;
                m_crossing = static_cast<float>(m_step) - m_level / (m_level - before);
                return true;
            }
        }
        return false;
    }

    float crossing() const { return m_crossing; }
    /// From the crossing before to this one.
    float run() const { return m_crossing - m_previous; }

private:
    const PixelLine &m_line;
    int m_direction;
    float m_threshold;
    int m_limit;
    int m_step = 0;
    float m_level;
    float m_crossing = 0;
    float m_previous = 0;
};

/// A line's way across a finder pattern.
struct FinderCrossing {
    float offset; ///< of the pattern's middle from the line's place, in steps
    float module; ///< in steps
};

/// Crosses a finder pattern from a place in its middle, whose modules are about so many
/// steps; nothing where there is no such pattern.
std::optional<FinderCrossing> crossFinder(const PixelLine &line, bool isDark, float threshold,
                                          float module);

} // namespace quillmark
