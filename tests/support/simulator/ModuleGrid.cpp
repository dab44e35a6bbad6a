// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/ModuleGrid.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace quillmark::test {
namespace {

constexpr int samplesAcross = 5;
constexpr float midGrey = 128;

/// The tone at a place, between the centres of the four pixels around it.
float toneAt(const LumaImage &picture, Point p)
{
    const double x = p.x - 0.5;
    const double y = p.y - 0.5;
    if (!(x >= 0 && y >= 0 && x < picture.width - 1 && y < picture.height - 1)) {
        return midGrey;
    }
    const int column = static_cast<int>(x);
    const int line = static_cast<int>(y);
    const auto along = static_cast<float>(x - column);
    const auto down = static_cast<float>(y - line);
    const std::uint8_t *above = picture.row(line) + column;
    const std::uint8_t *below = picture.row(line + 1) + column;
    const auto mix = [along](const std::uint8_t *pair) {
        return std::lerp(static_cast<float>(pair[0]), static_cast<float>(pair[1]), along);
    };
    return std::lerp(mix(above), mix(below), down);
}

} // namespace

void ModuleGrid::invert()
{
    for (float &tone : m_tones) {
        tone = 255 - tone;
    }
}

ModuleGrid ModuleGrid::sharpened(float strength) const
{
    ModuleGrid result(m_size);
    const auto clamped = [this](int column, int row) {
        return at(std::clamp(column, 0, m_size - 1), std::clamp(row, 0, m_size - 1));
    };
    for (int row = 0; row < m_size; ++row) {
        for (int column = 0; column < m_size; ++column) {
            const float around = (clamped(column - 1, row) + clamped(column + 1, row) +
                                  clamped(column, row - 1) + clamped(column, row + 1)) /
                                 4;
            const float tone = at(column, row);
            result.set(column, row, tone + strength * (tone - around));
        }
    }
    return result;
}

ModuleGrid ModuleGrid::localMeans(int reach) const
{
    ModuleGrid result(m_size);
    for (int row = 0; row < m_size; ++row) {
        for (int column = 0; column < m_size; ++column) {
            float sum = 0;
            int count = 0;
            for (int y = std::max(0, row - reach); y <= std::min(m_size - 1, row + reach); ++y) {
                for (int x = std::max(0, column - reach); x <= std::min(m_size - 1, column + reach);
                     ++x) {
                    sum += at(x, y);
                    ++count;
                }
            }
            result.set(column, row, sum / static_cast<float>(count));
        }
    }
    return result;
}

ModuleGrid ModuleGrid::otsuThreshold() const
{
    std::vector<float> sorted = m_tones;
    std::ranges::sort(sorted);
    double total = 0;
    for (const float tone : sorted) {
        total += tone;
    }
    const auto count = static_cast<double>(sorted.size());
    double below = 0;
    double best = -1;
    float threshold = 0;
    for (std::size_t i = 0; i + 1 < sorted.size(); ++i) {
        below += sorted[i];
        const double darkShare = static_cast<double>(i + 1) / count;
        const double darkMean = below / static_cast<double>(i + 1);
        const double lightMean = (total - below) / (count - static_cast<double>(i + 1));
        const double between =
            darkShare * (1 - darkShare) * (lightMean - darkMean) * (lightMean - darkMean);
        if (between > best) {
            best = between;
            threshold = (sorted[i] + sorted[i + 1]) / 2;
        }
    }
    return ModuleGrid(m_size, threshold);
}

ModuleGrid sampleModules(const LumaImage &picture, const CardGeometry &geometry, int codeSize,
                         double width)
{
    ModuleGrid grid(codeSize);
    const int across = width > 0 ? samplesAcross : 1;
    const auto offset = [across, width](int sample) {
        return 0.5 + width * ((sample + 0.5) / across - 0.5);
    };
    for (int row = 0; row < codeSize; ++row) {
        for (int column = 0; column < codeSize; ++column) {
            float sum = 0;
            for (int i = 0; i < across * across; ++i) {
                const int sampleRow = i / across;
                const Point module{column + offset(i % across), row + offset(sampleRow)};
                sum += toneAt(picture, geometry.map(module));
            }
            grid.set(column, row, sum / static_cast<float>(across * across));
        }
    }
    return grid;
}

} // namespace quillmark::test
