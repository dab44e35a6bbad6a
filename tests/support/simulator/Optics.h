// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/simulator/Card.h"

namespace quillmark::test {

/// How many pixels a blur of this spread reaches.
int blurReach(double sigmaPixels);

/// Throws what is laid over the frame out of focus: a Gaussian blur of the given standard
/// deviation in pixels, over coverage and light alike.
void defocus(Overlay &overlay, double sigmaPixels, int workers);

} // namespace quillmark::test
