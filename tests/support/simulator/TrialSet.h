// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/simulator/StoredFrame.h"

#include <QByteArray>

#include <array>
#include <cstdint>

namespace quillmark::test {

/// What makes a trial's slate hard to read. All of them have a little of everything else.
enum class Difficulty {
    clean,      ///< no more than what every scan has
    small,      ///< modules of 2 to 3.2 pixels
    blurred,    ///< out of focus up to 0.75 module, or shaken
    faint,      ///< contrast from 0.15, light that falls off, over- and underexposed
    glare,      ///< a lamp's reflection over a part of the code
    curved,     ///< leaning up to 30 degrees, a bent card, a distorting lens
    grainy,     ///< pushed film, dust and scratches
    jpeg,       ///< a small file: quality from 50, sharpened by the scanner
    deep,       ///< 16-bit files: linear ones that look nearly black, infrared channels
    negative,   ///< not inverted, with a mask or without, or seen from the film's back
    screened,   ///< a halftone print, or a telephone's display
    everything, ///< several of the above at once
};

inline constexpr std::array allDifficulties{
    Difficulty::clean, Difficulty::small,    Difficulty::blurred,  Difficulty::faint,
    Difficulty::glare, Difficulty::curved,   Difficulty::grainy,   Difficulty::jpeg,
    Difficulty::deep,  Difficulty::negative, Difficulty::screened, Difficulty::everything,
};

/// The enumerator's own name.
const char *nameOf(Difficulty difficulty);

/// One frame of a set over the range of what slates look like on real rolls: codes of
/// version 8 to 25 and of the levels L to Q, modules of 2 to 20 pixels, frames 1500 to 12000
/// pixels wide, most of them of 1.5 to 8 megapixels.
struct Trial {
    Difficulty difficulty = Difficulty::clean;
    SimulatedFrame frame; ///< with one card
    FrameFile file;
    QByteArray payload; ///< what the slate says
};

/// The same trial for the same seed and index; difficulties take turns.
Trial makeTrial(std::uint64_t seed, int index);

} // namespace quillmark::test
