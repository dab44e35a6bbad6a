// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/CodeTexture.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace quillmark {
namespace {

constexpr int linesEachWay = 5;
constexpr int samplesPerModule = 3;
constexpr int mostSamples = 3 * 220;
constexpr double hysteresis = 0.12; // of the patterns' contrast, to both sides

// Changes for each module of a line. In simulated codes of every kind, the readable ones had
// 0.29 to 0.86.
constexpr double leastChanges = 0.24;
constexpr double mostChanges = 0.95;

struct Line {
    PixelPoint from;
    PixelPoint along; ///< to its end
    double fromThreshold = 0;
    double alongThreshold = 0;
};

double changesPerModule(const LumaView &picture, const Line &line, double module, double band)
{
    const double modules = std::hypot(line.along.x, line.along.y) / module;
    const int samples = std::clamp(static_cast<int>(samplesPerModule * modules), 1, mostSamples);
    int changes = 0;
    int side = 0;
    for (int i = 0; i < samples; ++i) {
        const double share = (i + 0.5) / samples;
        const double x = line.from.x + share * line.along.x;
        const double y = line.from.y + share * line.along.y;
        if (!(x >= 0 && y >= 0 && x < picture.width && y < picture.height)) {
            continue;
        }
        const double level = picture.row(static_cast<int>(y))[static_cast<int>(x)] -
                             (line.fromThreshold + share * line.alongThreshold);
        const int here = level > band ? 1 : (level < -band ? -1 : side);
        changes += here != side && side != 0 ? 1 : 0;
        side = here;
    }
    return changes / modules;
}

/// Lines parallel to one side, spread over the other.
void measureLines(const LumaView &picture, const FinderTriangle &triangle,
                  const FinderMark &sideEnd, const FinderMark &otherEnd,
                  std::vector<double> &densities)
{
    const FinderMark &corner = triangle.corner;
    const double band =
        hysteresis * std::min({corner.contrast, sideEnd.contrast, otherEnd.contrast});
    for (int i = 1; i <= linesEachWay; ++i) {
        const double share = static_cast<double>(i) / (linesEachWay + 1);
        const Line line{{corner.x + share * (otherEnd.x - corner.x),
                         corner.y + share * (otherEnd.y - corner.y)},
                        {sideEnd.x - corner.x, sideEnd.y - corner.y},
                        corner.threshold + share * (otherEnd.threshold - corner.threshold),
                        sideEnd.threshold - corner.threshold};
        densities.push_back(changesPerModule(picture, line, triangle.module, band));
    }
}

} // namespace

bool hasCodeTexture(const LumaView &picture, const FinderTriangle &triangle)
{
    std::vector<double> densities;
    measureLines(picture, triangle, triangle.first, triangle.second, densities);
    measureLines(picture, triangle, triangle.second, triangle.first, densities);
    std::ranges::sort(densities);
    // One line at either end may meet a scratch or leave a leaning code.
    return densities[1] >= leastChanges && densities[densities.size() - 2] <= mostChanges;
}

} // namespace quillmark
