// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/simulator/Geometry.h"
#include "support/simulator/QrMatrix.h"

#include <cstdint>

namespace quillmark::test {

/// What shows a code.
enum class Surface {
    paper,    ///< solid ink on white
    halftone, ///< ink in dots of a screen at 45 degrees
    display,  ///< a telephone's: stripes of red, green and blue with dark gaps, on black
};

struct SheetOptions {
    Surface surface = Surface::paper;
    double pitch = 0.4;    ///< modules: of the halftone screen, or of the display's pixels
    double inkShare = 0.9; ///< of dark modules that the halftone dots cover
    double quietZone = 4;  ///< modules; ISO/IEC 18004 section 6.3.8 asks for 4
};

/// A code with a title and notes in print around it, in module coordinates.
class Sheet
{
public:
    Sheet(const QrMatrix &code, std::uint64_t seed, const SheetOptions &options);

    double left() const { return -m_options.quietZone - 0.04 * m_side; }
    double right() const { return m_side - left(); }
    double top() const { return -m_options.quietZone - 0.16 * m_side; }
    double bottom() const { return m_side + m_options.quietZone + 0.3 * m_side; }

    bool covers(Point p) const
    {
        return p.x >= left() && p.x < right() && p.y >= top() && p.y < bottom();
    }

    /// The light that comes from a place that it covers: 1 is white. Single dots of a display
    /// are brighter than that.
    float lightAt(Point p) const;

private:
    bool isInked(Point p) const;
    bool isLetter(Point p, double textTop, double letterHeight) const;
    float halftoneAt(Point p, bool inked) const;
    float displayAt(Point p, bool inked) const;

    const QrMatrix &m_code;
    double m_side;
    std::uint64_t m_seed;
    SheetOptions m_options;
};

} // namespace quillmark::test
