// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/CodeTexture.h"

#include "detection/MeanLevel.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace quillmark {
namespace {

constexpr int linesEachWay = 5;
constexpr int samplesPerModule = 3;
constexpr int mostSamples = 3 * 220;
constexpr int meanReach = 5 * samplesPerModule;
constexpr double hysteresis = 0.1; // of the patterns' contrast, to both sides

// Changes for each module of a line. In simulated codes of every kind, the readable ones had
// 0.29 to 0.86.
constexpr double leastChanges = 0.24;
constexpr double mostChanges = 0.95;

/// The changes between light and dark along a line, to a module of it.
class ChangeCounter
{
public:
    ChangeCounter(const LumaView &picture, double module, double contrast)
        : m_picture(picture), m_module(module), m_band(hysteresis * contrast)
    {}

    double along(PixelPoint from, PixelPoint way)
    {
        const double modules = std::hypot(way.x, way.y) / m_module;
        const int samples =
            std::clamp(static_cast<int>(samplesPerModule * modules), 1, mostSamples);
        m_levels.clear();
        for (int i = 0; i < samples; ++i) {
            const double share = (i + 0.5) / samples;
            const double x = from.x + share * way.x;
            const double y = from.y + share * way.y;
            if (x >= 0 && y >= 0 && x < m_picture.width && y < m_picture.height) {
                m_levels.push_back(meanLevel(m_picture, x, y, m_module));
            }
        }
        return countChanges() / modules;
    }

private:
    /// Across the mean of the neighbourhood: light may fall off along the line.
    int countChanges() const
    {
        const auto count = static_cast<int>(m_levels.size());
        const auto level = [this](int i) { return m_levels[static_cast<std::size_t>(i)]; };
        double sum = 0;
        int first = 0;
        int end = 0;
        int changes = 0;
        int side = 0;
        for (int i = 0; i < count; ++i) {
            for (; end < std::min(i + meanReach + 1, count); ++end) {
                sum += level(end);
            }
            for (; first < i - meanReach; ++first) {
                sum -= level(first);
            }
            const double over = level(i) - sum / (end - first);
            const int here = over > m_band ? 1 : (over < -m_band ? -1 : side);
            changes += here != side && side != 0 ? 1 : 0;
            side = here;
        }
        return changes;
    }

    const LumaView &m_picture;
    double m_module;
    double m_band;
    std::vector<double> m_levels;
};

/// Lines parallel to one side, spread over the other.
void measureLines(ChangeCounter &counter, const FinderTriangle &triangle, const FinderMark &sideEnd,
                  const FinderMark &otherEnd, std::vector<double> &densities)
{
    const FinderMark &corner = triangle.corner;
    for (int i = 1; i <= linesEachWay; ++i) {
        const double share = static_cast<double>(i) / (linesEachWay + 1);
        densities.push_back(counter.along({corner.x + share * (otherEnd.x - corner.x),
                                           corner.y + share * (otherEnd.y - corner.y)},
                                          {sideEnd.x - corner.x, sideEnd.y - corner.y}));
    }
}

} // namespace

bool hasCodeTexture(const LumaView &picture, const FinderTriangle &triangle)
{
    const double contrast =
        std::min({triangle.corner.contrast, triangle.first.contrast, triangle.second.contrast});
    ChangeCounter counter(picture, triangle.module, contrast);
    std::vector<double> densities;
    measureLines(counter, triangle, triangle.first, triangle.second, densities);
    measureLines(counter, triangle, triangle.second, triangle.first, densities);
    std::ranges::sort(densities);
    // One line at either end may meet a scratch or leave a leaning code.
    return densities[1] >= leastChanges && densities[densities.size() - 2] <= mostChanges;
}

} // namespace quillmark
