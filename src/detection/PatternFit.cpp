// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/PatternFit.h"

#include <Eigen/Dense>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <vector>

namespace quillmark {
namespace {

constexpr int finestSteps = 4; // template samples to a module
constexpr double leastFinderScore = 0.55;
constexpr double leastSoftScore = 0.45; // worse is no pattern, seen crisply either
constexpr double leastRoughScore = 0.5;
constexpr double leastAlignmentScore = 0.45;
constexpr int fitSteps = 14;

/// Squares in squares, dark in the middle, blurred: its values and slopes on a lattice.
class BlurredPattern
{
public:
    struct Sample {
        double u, v;           ///< modules from the middle
        double value;          ///< -1 is dark, 1 light
        double slopeU, slopeV; ///< to a module
    };

    /// `isLight` tells where light is, by the distance of a module from the middle one.
    template <typename LightRing>
    BlurredPattern(double reach, double step, double blur, const LightRing &isLight)
    {
        const auto value = [&](double u, double v) { return blurred(u, v, blur, isLight); };
        const int count = static_cast<int>(std::floor(reach / step));
        constexpr double h = 0.05;
        for (int y = -count; y <= count; ++y) {
            for (int x = -count; x <= count; ++x) {
                const double u = x * step;
                const double v = y * step;
                m_samples.push_back({u, v, value(u, v),
                                     (value(u + h, v) - value(u - h, v)) / (2 * h),
                                     (value(u, v + h) - value(u, v - h)) / (2 * h)});
            }
        }
        double sum = 0;
        for (const Sample &sample : m_samples) {
            sum += sample.value;
        }
        m_mean = sum / static_cast<double>(m_samples.size());
        for (const Sample &sample : m_samples) {
            m_norm += (sample.value - m_mean) * (sample.value - m_mean);
        }
    }

    const std::vector<Sample> &samples() const { return m_samples; }
    double mean() const { return m_mean; }
    double norm() const { return m_norm; }

private:
    static double below(double x, double blur)
    {
        return 0.5 * std::erfc(-x / (blur * std::sqrt(2.0)));
    }

    /// A square of rings is a sum of squares, and a blurred square a product of two steps.
    template <typename LightRing>
    static double blurred(double u, double v, double blur, const LightRing &isLight)
    {
        constexpr int rings = 8;
        double result = isLight(rings) ? 1 : -1;
        for (int ring = rings - 1; ring >= 0; --ring) {
            if (isLight(ring) != isLight(ring + 1)) {
                const double half = ring + 0.5;
                const double across = below(u + half, blur) - below(u - half, blur);
                const double down = below(v + half, blur) - below(v - half, blur);
                result += (isLight(ring) ? 2 : -2) * across * down;
            }
        }
        return result;
    }

    std::vector<Sample> m_samples;
    double m_mean = 0;
    double m_norm = 0;
};

bool finderIsLight(int ring)
{
    return ring == 2 || ring >= 4;
}

bool alignmentIsLight(int ring)
{
    return ring == 1;
}

/// How well the picture agrees with the pattern under a frame: the correlation, and the light
/// that explains the picture best.
struct Light {
    double gain = 0;
    double offset = 0;
    double correlation = 0;
};

Light lightUnder(const RegionImage &picture, const BlurredPattern &pattern, const LocalFrame &frame,
                 std::vector<double> &levels)
{
    const auto &samples = pattern.samples();
    levels.resize(samples.size());
    double sum = 0;
    double squares = 0;
    double product = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double level = picture.at(frame.at(samples[i].u, samples[i].v));
        levels[i] = level;
        sum += level;
        squares += level * level;
        product += level * (samples[i].value - pattern.mean());
    }
    const auto count = static_cast<double>(samples.size());
    const double mean = sum / count;
    const double spread = squares - sum * mean;
    Light light;
    light.gain = product / pattern.norm();
    light.offset = mean - light.gain * pattern.mean();
    light.correlation = spread > 0 ? product / std::sqrt(spread * pattern.norm()) : 0;
    return light;
}

using Normal = Eigen::Matrix<double, 6, 6>;
using Step = Eigen::Matrix<double, 6, 1>;

/// The equations for the six numbers of a frame around what they are. False where the picture
/// does not tell.
bool linearise(const BlurredPattern &pattern, const LocalFrame &frame, const Light &light,
               const std::vector<double> &levels, Normal &normal, Step &right)
{
    const double area = frame.right.x * frame.down.y - frame.right.y * frame.down.x;
    if (light.gain <= 0 || std::abs(area) < 1e-3) {
        return false;
    }
    normal.setZero();
    right.setZero();
    const auto &samples = pattern.samples();
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const auto &sample = samples[i];
        // The pattern's slope to a pixel: that to a module, through the frame's inverse.
        const double x =
            light.gain * (sample.slopeU * frame.down.y - sample.slopeV * frame.right.y) / area;
        const double y =
            light.gain * (sample.slopeV * frame.right.x - sample.slopeU * frame.down.x) / area;
        const double rest = light.gain * sample.value + light.offset - levels[i];
        Step row;
        row << x, y, x * sample.u, y * sample.u, x * sample.v, y * sample.v;
        normal.noalias() += row * row.transpose();
        right += rest * row;
    }
    return true;
}

LocalFrame moved(const LocalFrame &frame, const Step &step)
{
    return {{frame.middle.x + step[0], frame.middle.y + step[1]},
            {frame.right.x + step[2], frame.right.y + step[3]},
            {frame.down.x + step[4], frame.down.y + step[5]},
            0};
}

/// Fits all six numbers of a frame, taking only steps that better it: the pattern may be
/// softer or crisper than the picture, and full steps then miss (damping after Marquardt,
/// 1963).
void fit(const RegionImage &picture, const BlurredPattern &pattern, LocalFrame &frame,
         std::vector<double> &levels)
{
    Light light = lightUnder(picture, pattern, frame, levels);
    frame.score = light.correlation;
    Normal normal;
    Step right;
    double damping = 0.1;
    bool isFresh = false;
    for (int i = 0; i < fitSteps; ++i) {
        if (!isFresh && !linearise(pattern, frame, light, levels, normal, right)) {
            return;
        }
        Normal damped = normal;
        damped.diagonal() *= 1 + damping;
        const Step step = damped.ldlt().solve(right);
        if (!step.allFinite()) {
            return;
        }
        LocalFrame next = moved(frame, step);
        std::vector<double> nextLevels;
        const Light nextLight = lightUnder(picture, pattern, next, nextLevels);
        next.score = nextLight.correlation;
        isFresh = next.score <= frame.score;
        if (isFresh) {
            damping *= 6;
            continue;
        }
        const bool isThere = next.score - frame.score < 1e-4;
        frame = next;
        light = nextLight;
        levels.swap(nextLevels);
        damping = std::max(damping / 3, 1e-3);
        if (isThere) {
            return;
        }
    }
}

double length(PixelPoint p)
{
    return std::hypot(p.x, p.y);
}

/// Whether a fit stayed with what it started from.
bool isNear(const LocalFrame &start, const LocalFrame &frame)
{
    const double module = (length(start.right) + length(start.down)) / 2;
    const double moved =
        std::hypot(frame.middle.x - start.middle.x, frame.middle.y - start.middle.y);
    const auto ratio = [](double a, double b) { return a > b ? a / b : b / a; };
    return moved < 2.5 * module && ratio(length(frame.right), length(start.right)) < 1.6 &&
           ratio(length(frame.down), length(start.down)) < 1.6;
}

/// A translation alone, of two numbers.
void centre(const RegionImage &picture, const BlurredPattern &pattern, LocalFrame &frame,
            std::vector<double> &levels)
{
    for (int i = 0; i < 5; ++i) {
        const Light light = lightUnder(picture, pattern, frame, levels);
        frame.score = light.correlation;
        const double area = frame.right.x * frame.down.y - frame.right.y * frame.down.x;
        if (light.gain <= 0 || std::abs(area) < 1e-3) {
            return;
        }
        // In modules: the frame's steps are known.
        Eigen::Matrix2d normal = Eigen::Matrix2d::Zero();
        Eigen::Vector2d right = Eigen::Vector2d::Zero();
        const auto &samples = pattern.samples();
        for (std::size_t k = 0; k < samples.size(); ++k) {
            const Eigen::Vector2d row(light.gain * samples[k].slopeU,
                                      light.gain * samples[k].slopeV);
            const double rest = light.gain * samples[k].value + light.offset - levels[k];
            normal += row * row.transpose();
            right += rest * row;
        }
        const Eigen::Vector2d step = normal.ldlt().solve(right);
        if (!step.allFinite() || step.norm() > 1) {
            return;
        }
        frame.middle = frame.at(step[0], step[1]);
        if (step.norm() < 0.01) {
            return;
        }
    }
}

/// Of the places around a frame's middle, a step apart, the one where the pattern fits best.
LocalFrame bestPlace(const RegionImage &picture, const BlurredPattern &pattern,
                     const LocalFrame &start, double reach, double step)
{
    const int count = static_cast<int>(std::ceil(reach / step));
    std::vector<double> levels;
    LocalFrame best = start;
    best.score = -1;
    for (int y = -count; y <= count; ++y) {
        for (int x = -count; x <= count; ++x) {
            LocalFrame frame = start;
            frame.middle = start.at(x * step, y * step);
            const Light light = lightUnder(picture, pattern, frame, levels);
            // What lies near is likelier.
            const double far = std::hypot(x, y) / std::max(count, 1);
            const double score = light.correlation - 0.1 * far;
            if (light.gain > 0 && score > best.score) {
                best = frame;
                best.score = score;
            }
        }
    }
    return best;
}

} // namespace

std::optional<LocalFrame> fitFinder(const RegionImage &picture, const LocalFrame &start)
{
    static const BlurredPattern soft(4.25, 0.5, 0.8, finderIsLight);
    static const BlurredPattern crisp(4.25, 1.0 / finestSteps, 0.45, finderIsLight);
    std::vector<double> levels;
    LocalFrame frame = start;
    fit(picture, soft, frame, levels);
    if (frame.score < leastSoftScore || !isNear(start, frame)) {
        return std::nullopt;
    }
    fit(picture, crisp, frame, levels);
    return frame.score >= leastFinderScore && isNear(start, frame) ? std::optional(frame)
                                                                   : std::nullopt;
}

std::optional<LocalFrame> fitTurnedFinder(const RegionImage &picture, PixelPoint middle,
                                          double module)
{
    static const BlurredPattern rough(4.1, 0.5, 0.7, finderIsLight);
    constexpr int turns = 6; // of a right angle: the pattern looks the same after one
    std::vector<double> levels;
    LocalFrame best;
    best.score = -1;
    for (int i = 0; i < turns; ++i) {
        const double angle = i * std::acos(0.0) / turns;
        const PixelPoint right{module * std::cos(angle), module * std::sin(angle)};
        LocalFrame frame{middle, right, {-right.y, right.x}, 0};
        frame.score = lightUnder(picture, rough, frame, levels).correlation;
        if (frame.score > best.score) {
            best = frame;
        }
    }
    return fitFinder(picture, best);
}

FinderLight finderLight(const RegionImage &picture, const LocalFrame &frame)
{
    static const BlurredPattern soft(4.25, 0.5, 0.45, finderIsLight);
    std::vector<double> levels;
    const Light light = lightUnder(picture, soft, frame, levels);
    return {light.offset, 2 * light.gain};
}

std::optional<LocalFrame> findFinder(const RegionImage &picture, const LocalFrame &start,
                                     double reach)
{
    static const BlurredPattern rough(4.1, 1.0, 0.7, finderIsLight);
    const LocalFrame best = bestPlace(picture, rough, start, reach, 0.6);
    return best.score >= leastRoughScore ? fitFinder(picture, best) : std::nullopt;
}

std::optional<LocalFrame> findAlignment(const RegionImage &picture, const LocalFrame &start,
                                        double reach)
{
    static const BlurredPattern rough(2.3, 0.5, 0.5, alignmentIsLight);
    static const BlurredPattern fine(2.3, 0.25, 0.45, alignmentIsLight);
    LocalFrame best = bestPlace(picture, rough, start, reach, 0.34);
    if (best.score < leastAlignmentScore) {
        return std::nullopt;
    }
    std::vector<double> levels;
    centre(picture, fine, best, levels);
    return best;
}

} // namespace quillmark
