// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameDecoder.h"
#include "support/simulator/CardGeometry.h"

#include <cstddef>
#include <vector>

namespace quillmark::test {

/// One tone (0 is black, 255 white) for each module of a code.
class ModuleGrid
{
public:
    explicit ModuleGrid(int size, float value = 0)
        : m_size(size),
          m_tones(static_cast<std::size_t>(size) * static_cast<std::size_t>(size), value)
    {}

    int size() const { return m_size; }
    float at(int column, int row) const { return m_tones[index(column, row)]; }
    void set(int column, int row, float tone) { m_tones[index(column, row)] = tone; }

    /// Light and dark exchanged.
    void invert();

    /// Each tone moved away from the mean of its four neighbours, by a factor of the
    /// difference.
    ModuleGrid sharpened(float strength) const;

    /// For each module the mean over a square of so many modules to each side.
    ModuleGrid localMeans(int reach) const;

    /// One threshold for all (Otsu, "A threshold selection method from gray-level
    /// histograms", 1979).
    ModuleGrid otsuThreshold() const;

private:
    std::size_t index(int column, int row) const
    {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(m_size) +
               static_cast<std::size_t>(column);
    }

    int m_size;
    std::vector<float> m_tones;
};

/// The mean over each module's middle, `width` modules wide; 0 takes its centre alone.
/// Outside the picture is mid-grey.
ModuleGrid sampleModules(const LumaImage &picture, const CardGeometry &geometry, int codeSize,
                         double width);

} // namespace quillmark::test
