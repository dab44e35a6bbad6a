// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/simulator/SlateFrame.h"

#include <QByteArray>

#include <cstdint>

namespace quillmark::test {

/// One frame of a set over the range of what slates look like on real rolls, from easy to
/// hopeless: 2 to 24 megapixels, 57 to 117 modules of 2.2 pixels and up, any turn, leaning
/// up to 35 degrees, blurred up to 0.75 module, contrast from 0.25, grain, dust, one in
/// five negative and one in ten mirrored.
struct Trial {
    SimulatedFrame frame;
    QByteArray payload; ///< what the slate says
};

/// The same trial for the same seed and index.
Trial makeTrial(std::uint64_t seed, int index);

} // namespace quillmark::test
