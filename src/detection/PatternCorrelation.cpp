// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/PatternCorrelation.h"

#include "detection/GreyPlane.h"
#include "detection/LumaKernels.h"
#include "detection/WorkerThreads.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace quillmark {
namespace {

constexpr double templateModule = 1.6; // pixels
constexpr int templateReach = 7;       // pixels to each side: pattern, light and a bit
constexpr int squareReach = 6;         // of the square that holds the pattern
constexpr double patternReach = 4.5;   // modules from its middle
constexpr double patternBlur = 0.5;    // modules
constexpr double moduleStep = 1.2;     // from one size to the next
constexpr double leastCorrelation = 0.3;
constexpr double busyShare = 0.85; // of places are less busy
constexpr float fullShare = 0.7F;  // of what is busy, and no less
constexpr double leastSpread = 2;  // grey levels
constexpr int peakReach = 2;       // pixels of the copy
constexpr std::size_t templateSide = templateReach + 1;

/// One quarter of the template: it is the same in all.
using Template = std::array<std::array<float, templateSide>, templateSide>;

/// How dark a finder pattern is at a distance from its middle, in modules, in the mean over all
/// directions: 1 is dark, 0 light.
double darknessAt(double distance)
{
    constexpr int directions = 32;
    const double quarter = std::acos(0.0);
    double sum = 0;
    for (int i = 0; i < directions; ++i) {
        const double angle = (i + 0.5) / directions * quarter;
        const double out = distance * std::max(std::cos(angle), std::sin(angle));
        sum += out < 1.5 || (out >= 2.5 && out < 3.5) ? 1 : 0;
    }
    return sum / directions;
}

double blurredDarknessAt(double distance)
{
    constexpr int steps = 6;
    double sum = 0;
    double weights = 0;
    for (int i = -steps; i <= steps; ++i) {
        const double off = 2.0 * i / steps; // in deviations
        const double weight = std::exp(-off * off / 2);
        sum += weight * darknessAt(std::abs(distance + off * patternBlur));
        weights += weight;
    }
    return sum / weights;
}

/// Sums to nothing over all four quarters, and its squares to one.
Template makeTemplate()
{
    Template quarter{};
    const auto isInside = [](std::size_t x, std::size_t y) {
        return std::hypot(x, y) <= patternReach * templateModule;
    };
    const auto times = [](std::size_t x, std::size_t y) {
        return (x == 0 ? 1 : 2) * (y == 0 ? 1 : 2);
    };
    double sum = 0;
    double count = 0;
    const auto each = [&](const auto &visit) {
        for (std::size_t y = 0; y < templateSide; ++y) {
            for (std::size_t x = 0; x < templateSide; ++x) {
                if (isInside(x, y)) {
                    visit(quarter[y][x], times(x, y), std::hypot(x, y) / templateModule);
                }
            }
        }
    };
    each([&](float &value, int how, double distance) {
        value = -static_cast<float>(blurredDarknessAt(distance));
        sum += static_cast<double>(value) * how;
        count += how;
    });
    double squares = 0;
    each([&](float &value, int how, double) {
        value -= static_cast<float>(sum / count);
        squares += static_cast<double>(value) * value * how;
    });
    each([&](float &value, int, double) { value /= static_cast<float>(std::sqrt(squares)); });
    return quarter;
}

/// The correlation of each pixel's neighbourhood with the template; nothing along the edges.
class Correlator
{
public:
    explicit Correlator(const GreyPlane &plane)
        : m_plane(plane),
          m_result(plane.width, plane.height),
          m_spreads(plane.width, plane.height),
          m_folded(static_cast<std::size_t>(plane.width)),
          m_sums(static_cast<std::size_t>(plane.width)),
          m_squares(static_cast<std::size_t>(plane.width)),
          m_windowSums(static_cast<std::size_t>(plane.width)),
          m_windowSquares(static_cast<std::size_t>(plane.width))
    {}

    /// What is nearly flat may look like anything: there the correlation counts for less, by how
    /// much less the light spreads there than in busy places.
    GreyPlane run()
    {
        static const Template weights = makeTemplate();
        for (int y = templateReach; y < m_plane.height - templateReach; ++y) {
            addProducts(y, weights);
            divideBySpread(y);
        }
        lessenFlat();
        return std::move(m_result);
    }

private:
    void addProducts(int y, const Template &weights)
    {
        float *out = m_result.row(y);
        for (int v = 0; v <= templateReach; ++v) {
            const float *above = m_plane.row(y - v);
            const float *below = m_plane.row(y + v);
            float *folded = m_folded.data();
            const float share = v == 0 ? 0.5F : 1.0F;
            for (int x = 0; x < m_plane.width; ++x) {
                folded[x] = share * (above[x] + below[x]);
            }
            const auto &row = weights[static_cast<std::size_t>(v)];
            const auto reach = static_cast<std::size_t>(std::ranges::find(row, 0.0F) - row.begin());
            addMirrored(folded + templateReach, row.data(), reach,
                        static_cast<std::size_t>(m_plane.width - 2 * templateReach),
                        out + templateReach);
        }
    }

    /// The sums of each column's pixels from squareReach above a row to as many below. Rows are
    /// asked for one after another.
    void moveSumsTo(int y)
    {
        if (y == templateReach) {
            for (int v = -squareReach; v < squareReach; ++v) {
                addToSums(m_plane.row(y + v), 1);
            }
        } else {
            addToSums(m_plane.row(y - squareReach - 1), -1);
        }
        addToSums(m_plane.row(y + squareReach), 1);
    }

    /// In double numbers nothing is rounded that would still show rows later.
    void addToSums(const float *row, double sign)
    {
        for (std::size_t x = 0; x < m_sums.size(); ++x) {
            const double value = row[x];
            m_sums[x] += sign * value;
            m_squares[x] += sign * value * value;
        }
    }

    /// Over the square that holds the pattern.
    void divideBySpread(int y)
    {
        constexpr double count = (2.0 * squareReach + 1) * (2.0 * squareReach + 1);
        // The template covers a disc; its share of the square's pixels.
        const float rootOfDiscShare = std::sqrt(163.0F / static_cast<float>(count));
        moveSumsTo(y);
        windowSums(m_sums, m_windowSums);
        windowSums(m_squares, m_windowSquares);
        const auto width = static_cast<std::size_t>(m_plane.width - 2 * templateReach);
        float *out = m_result.row(y) + templateReach;
        float *spreads = m_spreads.row(y) + templateReach;
        for (std::size_t x = 0; x < width; ++x) {
            const double spread = m_windowSquares[x] - m_windowSums[x] * m_windowSums[x] / count;
            const bool isFlat = spread < count * leastSpread * leastSpread;
            const float deviation = isFlat ? 0.0F : std::sqrt(static_cast<float>(spread));
            out[x] = isFlat ? 0.0F : out[x] / (deviation * rootOfDiscShare);
            spreads[x] = deviation;
        }
    }

    /// Of the squares around all places of a row that have a correlation.
    static void windowSums(const std::vector<double> &columns, std::vector<double> &windows)
    {
        constexpr std::size_t first = templateReach - squareReach;
        constexpr std::size_t side = 2 * squareReach + 1;
        double sum = 0;
        for (std::size_t x = first; x < first + side; ++x) {
            sum += columns[x];
        }
        const std::size_t count = columns.size() - std::size_t{2} * templateReach;
        for (std::size_t x = 0; x < count; ++x) {
            windows[x] = sum;
            sum += columns[first + x + side] - columns[first + x];
        }
    }

    void lessenFlat()
    {
        std::vector<float> sorted;
        for (std::size_t i = 0; i < m_spreads.values.size(); i += 7) {
            sorted.push_back(m_spreads.values[i]);
        }
        const auto busy = sorted.begin() + static_cast<std::ptrdiff_t>(
                                               busyShare * static_cast<double>(sorted.size() - 1));
        std::ranges::nth_element(sorted, busy);
        const float full = std::max(fullShare * *busy, 1.0F);
        for (std::size_t i = 0; i < m_result.values.size(); ++i) {
            m_result.values[i] *= std::min(m_spreads.values[i] / full, 1.0F);
        }
    }

    const GreyPlane &m_plane;
    GreyPlane m_result;
    GreyPlane m_spreads;
    std::vector<float> m_folded;
    std::vector<double> m_sums; ///< of columns
    std::vector<double> m_squares;
    std::vector<double> m_windowSums;
    std::vector<double> m_windowSquares;
};

bool isPeak(const GreyPlane &plane, int x, int y)
{
    const float here = plane.row(y)[x];
    const float sign = here > 0 ? 1.0F : -1.0F;
    for (int v = -peakReach; v <= peakReach; ++v) {
        const float *row = plane.row(y + v);
        for (int u = -peakReach; u <= peakReach; ++u) {
            if (sign * row[x + u] > sign * here) {
                return false;
            }
        }
    }
    return true;
}

void addPeaks(const GreyPlane &plane, double module, std::vector<PatternPlace> &places)
{
    const double scale = module / templateModule;
    for (int y = templateReach; y < plane.height - templateReach; ++y) {
        const float *row = plane.row(y);
        for (int x = templateReach; x < plane.width - templateReach; ++x) {
            if (std::abs(row[x]) > static_cast<float>(leastCorrelation) && isPeak(plane, x, y)) {
                places.push_back(
                    {{(x + 0.5) * scale, (y + 0.5) * scale}, module, static_cast<double>(row[x])});
            }
        }
    }
}

bool areOne(const PatternPlace &a, const PatternPlace &b)
{
    const double near = 2 * std::min(a.module, b.module);
    return (a.correlation > 0) == (b.correlation > 0) && std::abs(a.middle.x - b.middle.x) < near &&
           std::abs(a.middle.y - b.middle.y) < near;
}

} // namespace

std::vector<PatternPlace> findPatternPlaces(const LumaView &picture, double leastModule,
                                            double mostModule, std::size_t most)
{
    const double octaves = std::log2(std::max(mostModule / leastModule, 1.0));
    const int steps = static_cast<int>(octaves / std::log2(moduleStep) + 0.01);
    std::vector<std::vector<PatternPlace>> peaks(static_cast<std::size_t>(steps) + 1);
    shareOut(steps + 1, [&](int step) {
        const double module = leastModule * std::pow(moduleStep, step);
        const GreyPlane plane = resampled(picture, module / templateModule);
        if (std::min(plane.width, plane.height) > 2 * templateReach) {
            addPeaks(Correlator(plane).run(), module, peaks[static_cast<std::size_t>(step)]);
        }
    });
    std::vector<PatternPlace> places;
    for (const std::vector<PatternPlace> &ofStep : peaks) {
        places.insert(places.end(), ofStep.begin(), ofStep.end());
    }
    std::ranges::stable_sort(places, std::ranges::greater{},
                             [](const PatternPlace &place) { return std::abs(place.correlation); });
    std::vector<PatternPlace> chosen;
    std::array<std::size_t, 2> counts{};
    for (const PatternPlace &place : places) {
        const auto isKnown = [&place](const PatternPlace &known) { return areOne(place, known); };
        std::size_t &count = counts[place.correlation > 0 ? 0 : 1];
        if (count < most && std::ranges::none_of(chosen, isKnown)) {
            chosen.push_back(place);
            ++count;
        }
    }
    return chosen;
}

} // namespace quillmark
