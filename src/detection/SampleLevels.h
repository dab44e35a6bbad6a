// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillmark {

/// The samples that become black and white; what lies between is spread evenly. In the unit
/// of the samples.
struct Levels {
    float black = 0;
    float white = 1;
};

/// Finds levels from some of a frame's pixels.
///
/// Scanners often deliver deep samples as the sensor has them, linear and with room to
/// spare, so that all of the picture lies in a small part of the range and would be nearly
/// one and the same grey in 8 bits. Such a picture is stretched, from the darkest to the
/// lightest of its pixels but for a few that are defects. One that fills its range stays
/// as it is and so looks as its 8-bit twin does.
class LevelSampler
{
public:
    /// The nominal range is 0 to `nominalWhite`.
    explicit LevelSampler(float nominalWhite) : m_nominalWhite(nominalWhite) {}

    /// What is not a finite number is passed over.
    void add(float sample);

    /// How many were added.
    std::size_t count() const { return m_samples.size(); }

    /// Ends the sampling.
    Levels levels() &&;

private:
    float m_nominalWhite;
    std::vector<float> m_samples;
};

/// Any value in the range of the levels; what lies outside becomes black or white, and so
/// does infinity. What is no number is black.
void applyLevels(const Levels &levels, const float *samples, int count, std::uint8_t *out);

} // namespace quillmark
