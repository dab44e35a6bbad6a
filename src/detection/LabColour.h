// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>

namespace quillmark {

/// The sRGB value (IEC 61966-2-1) of the grey that has the given lightness L* (CIE 15),
/// both from 0 to 1: files say lightness, everything else here is such a value.
double greyOfLightness(double lightness);

/// Red, green and blue of sRGB, 0 to 1, for L* from 0 to 1 and a* and b* in the usual unit
/// (some -128 to 127), the white being D50 as files in print have it. What sRGB cannot show
/// comes as the nearest value in each channel.
std::array<float, 3> rgbOfLab(float lightness, float a, float b);

} // namespace quillmark
