// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>

namespace quillmark::test {

struct Point {
    double x = 0;
    double y = 0;
};

/// A plane-to-plane projection: nine numbers by rows.
struct Homography {
    std::array<double, 9> m{1, 0, 0, 0, 1, 0, 0, 0, 1};

    Point map(Point p) const
    {
        const double w = m[6] * p.x + m[7] * p.y + m[8];
        return {(m[0] * p.x + m[1] * p.y + m[2]) / w, (m[3] * p.x + m[4] * p.y + m[5]) / w};
    }

    /// The adjugate: the inverse but for a factor, which a projection does not show.
    Homography inverse() const
    {
        return {{m[4] * m[8] - m[5] * m[7], m[2] * m[7] - m[1] * m[8], m[1] * m[5] - m[2] * m[4],
                 m[5] * m[6] - m[3] * m[8], m[0] * m[8] - m[2] * m[6], m[2] * m[3] - m[0] * m[5],
                 m[3] * m[7] - m[4] * m[6], m[1] * m[6] - m[0] * m[7], m[0] * m[4] - m[1] * m[3]}};
    }
};

} // namespace quillmark::test
