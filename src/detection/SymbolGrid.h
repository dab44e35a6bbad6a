// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FinderTriangle.h"
#include "detection/Homography.h"
#include "detection/PatternFit.h"
#include "detection/RegionImage.h"

#include <optional>
#include <vector>

namespace quillmark {

/// Where each module of a symbol lies on a picture: a projection, bent until it goes through
/// the places that were found on it.
class SymbolGrid
{
public:
    /// The grid of a version's symbol that goes through these knots. Nothing where they do not
    /// fix a projection.
    static std::optional<SymbolGrid> through(int version, std::vector<GridKnot> knots);

    int version() const { return m_version; }
    int side() const { return m_side; }
    const std::vector<GridKnot> &knots() const { return m_knots; }
    /// Without the bending.
    const Homography &plane() const { return m_plane; }

    /// In modules from the symbol's top left corner: (0.5, 0.5) is the first one's middle.
    PixelPoint at(double column, double row) const;

    /// The grid around a place.
    LocalFrame frameAt(double column, double row) const;

private:
    SymbolGrid() = default;
    void bend();

    static constexpr double cellModules = 6;

    int m_version = 0;
    int m_side = 0;
    std::vector<GridKnot> m_knots;
    Homography m_plane;
    int m_cells = 0; ///< of the bending, along a side
    std::vector<PixelPoint> m_bending;
};

/// The grids that a code may have whose finder patterns a triangle marks, the likeliest first;
/// none where no code stands there. The patterns are found again on the picture; the version
/// is told by their distance, the timing patterns and what the symbol says of it; and the
/// alignment patterns are found one by one, from the nearest on (ISO/IEC 18004:2015
/// section 12). Throws std::bad_alloc. Any thread.
std::vector<SymbolGrid> findGrids(const RegionImage &picture, const FinderTriangle &triangle);

} // namespace quillmark
