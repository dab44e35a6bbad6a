// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/Light.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <utility>

namespace quillmark::test {

Light::Light(int width, int height, std::uint64_t seed, LightOptions options)
    : m_width(width),
      m_height(height),
      m_options(std::move(options)),
      m_noise(seed ^ 0x11U, static_cast<float>(std::max(width, height)))
{}

void Light::shadeRow(int y, std::span<float> tone)
{
    const auto unevenness = static_cast<float>(m_options.unevenness);
    m_light.assign(tone.size(), 1.0F - unevenness);
    m_noise.add(y, unevenness, m_light);
    if (m_options.falloff > 0) {
        const double angle = m_options.falloffTowards * std::numbers::pi / 180.0;
        const double stepX = std::cos(angle) / m_width;
        const double start = std::sin(angle) * (y / m_height - 0.5) - 0.5 * std::cos(angle);
        for (std::size_t x = 0; x < tone.size(); ++x) {
            // From -0.5 to 0.5 over the frame, somewhat more towards its corners.
            const double way = start + stepX * static_cast<double>(x);
            m_light[x] *= static_cast<float>(
                std::clamp(1 - m_options.falloff * (way + 0.5), 1 - m_options.falloff, 1.0));
        }
    }
    for (std::size_t x = 0; x < tone.size(); ++x) {
        tone[x] *= m_light[x];
    }
    for (const Glare &glare : m_options.glares) {
        addGlare(glare, y, tone);
    }
}

void Light::addGlare(const Glare &glare, int y, std::span<float> tone) const
{
    const double across = (y + 0.5 - glare.middle.y) / glare.radiusY;
    if (std::abs(across) >= 1) {
        return;
    }
    const auto column = [this](double x) {
        return static_cast<std::size_t>(std::clamp(x, 0.0, m_width));
    };
    const std::size_t end = column(glare.middle.x + glare.radiusX);
    for (std::size_t x = column(glare.middle.x - glare.radiusX); x < end; ++x) {
        const double along = (static_cast<double>(x) + 0.5 - glare.middle.x) / glare.radiusX;
        const double inside = std::max(0.0, 1 - along * along - across * across);
        tone[x] += static_cast<float>(glare.strength * inside * inside);
    }
}

} // namespace quillmark::test
