// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SampleLevels.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace quillmark {
namespace {

/// The share of pixels at either end that may be defects: a stuck sensor element is one
/// column of some thousands, while the smallest code on a frame covers more than this.
constexpr double defectShare = 0.0005;

/// A picture that takes up this share of the nominal range is not stretched.
constexpr float fullEnough = 0.5F;

/// How far outside the nominal range a picture may reach and still count as inside.
constexpr float rangeTolerance = 0.02F;

/// A range narrower than this, relative to the values, is a single value with rounding errors.
constexpr float narrowest = 1e-5F;

} // namespace

void LevelSampler::add(float sample)
{
    if (std::isfinite(sample)) {
        m_samples.push_back(sample);
    }
}

Levels LevelSampler::levels() &&
{
    const Levels nominal{0, m_nominalWhite};
    if (m_samples.empty()) {
        return nominal;
    }
    const auto defects =
        static_cast<std::size_t>(static_cast<double>(m_samples.size() - 1) * defectShare);
    const auto dark = m_samples.begin() + static_cast<std::ptrdiff_t>(defects);
    const auto light = m_samples.end() - 1 - static_cast<std::ptrdiff_t>(defects);
    std::nth_element(m_samples.begin(), dark, m_samples.end());
    const float black = *dark;
    std::nth_element(dark, light, m_samples.end());
    const Levels found{black, *light};

    const float range = found.white - found.black;
    const bool inside = found.black >= -rangeTolerance * m_nominalWhite &&
                        found.white <= (1 + rangeTolerance) * m_nominalWhite;
    const bool single =
        !(range > narrowest * std::max(std::abs(found.black), std::abs(found.white)));
    return (inside && range >= fullEnough * m_nominalWhite) || single ? nominal : found;
}

void applyLevels(const Levels &levels, const float *samples, int count, std::uint8_t *out)
{
    const float black = levels.black;
    const float scale = 255 / (levels.white - levels.black);
    for (int i = 0; i < count; ++i) {
        const float value = (samples[i] - black) * scale + 0.5F;
        // In this order, what is no number fails both comparisons.
        const float lit = value > 0 ? value : 0;
        const float bounded = lit < 255 ? lit : 255;
        out[i] = static_cast<std::uint8_t>(bounded);
    }
}

} // namespace quillmark
