// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/simulator/Card.h"

namespace quillmark::test {

/// A straight shake of the camera while the shutter was open.
struct Motion {
    double length = 0;    ///< pixels
    double direction = 0; ///< degrees
};

/// Light that has gone through the film and comes back from behind it, or was scattered in
/// the lens: a share of all light is spread widely.
struct Halation {
    double share = 0;  ///< 0 to 1
    double spread = 0; ///< standard deviation, in pixels
};

/// How many pixels a blur of this spread reaches.
int blurReach(double sigmaPixels);
int blurReach(const Motion &motion);
int blurReach(const Halation &halation);

/// Throws what is laid over the frame out of focus: a Gaussian blur of the given standard
/// deviation in pixels, over coverage and light alike.
void defocus(Overlay &overlay, double sigmaPixels, int workers);

/// Draws coverage and light out along the motion.
void shake(Overlay &overlay, const Motion &motion, int workers);

/// Puts halation over coverage and light.
void addHalation(Overlay &overlay, const Halation &halation, int workers);

} // namespace quillmark::test
