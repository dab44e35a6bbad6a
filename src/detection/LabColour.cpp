// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/LabColour.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace quillmark {
namespace {

double companded(double linear)
{
    return linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
}

/// The transfer curve of sRGB in steps that are far below one of 8 bits.
constexpr std::size_t steps = 16384;

float compandedByTable(float linear)
{
    static const auto table = [] {
        std::array<float, steps + 1> values{};
        for (std::size_t i = 0; i < values.size(); ++i) {
            values[i] = static_cast<float>(companded(static_cast<double>(i) / steps));
        }
        return values;
    }();
    const float place = std::clamp(linear, 0.0F, 1.0F) * steps + 0.5F;
    return table[static_cast<std::size_t>(place)];
}

/// CIE 15, equations for the reverse transformation from L*a*b*.
float cubed(float root)
{
    constexpr float knee = 6.0F / 29;
    return root > knee ? root * root * root : 3 * knee * knee * (root - 4.0F / 29);
}

} // namespace

double greyOfLightness(double lightness)
{
    const double root = (lightness + 0.16) / 1.16;
    const double luminance = lightness > 0.08 ? root * root * root : lightness * 2700 / 24389;
    return companded(luminance);
}

std::array<float, 3> rgbOfLab(float lightness, float a, float b)
{
    const float root = (lightness + 0.16F) / 1.16F;
    // The white of D50 (ISO 15076-1).
    const float x = 0.96422F * cubed(root + a / 500);
    const float y = cubed(root);
    const float z = 0.82521F * cubed(root - b / 200);
    // The inverse of the matrix of sRGB's primaries, adapted from D65 to D50 by Bradford's
    // method, as profiles of sRGB have it.
    return {compandedByTable(3.1338561F * x - 1.6168667F * y - 0.4906146F * z),
            compandedByTable(-0.9787684F * x + 1.9161415F * y + 0.0334540F * z),
            compandedByTable(0.0719453F * x - 0.2289914F * y + 1.4052427F * z)};
}

} // namespace quillmark
