// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/RegionImage.h"
#include "detection/SymbolGrid.h"
#include "detection/SymbolPattern.h"

#include <vector>

namespace quillmark {

/// A square of modules by rows, each with how sure it is dark: above 0 dark, below light, and
/// about 1 or -1 where there is no doubt.
struct ModuleLevels {
    int side = 0;
    std::vector<float> levels;

    float at(int column, int row) const
    {
        return levels[static_cast<std::size_t>(row) * static_cast<std::size_t>(side) +
                      static_cast<std::size_t>(column)];
    }
};

/// Each module's light against the mean of its neighbourhood, of `reach` modules to each side: all
/// that crisp codes need. Throws std::bad_alloc. Any thread.
ModuleLevels plainLevels(const RegionImage &picture, const SymbolGrid &grid, int reach);

/// Tells dark modules from light ones where the lens, the film and the scanner have run them
/// into one another. The picture is sampled twice to a module; each module is then a weighted sum
/// of the samples around it, with the weights that explain best what is known of the symbol, and
/// what was taken for dark and light before: a decision-directed linear equaliser (Lucky,
/// "Techniques for adaptive equalization of digital communication systems", 1966) with
/// fractional spacing.
class ModuleEqualiser
{
public:
    ModuleEqualiser(const RegionImage &picture, const SymbolGrid &grid,
                    const SymbolPattern &pattern);

    /// One round of equalisation that starts from what is held to be dark and light, and is sure
    /// in some modules (none may be given).
    ModuleLevels equalise(const ModuleLevels &held, const std::vector<bool> &sure = {}) const;

private:
    float sample(int halfColumn, int halfRow) const;
    void flatten();

    const SymbolPattern &m_pattern;
    int m_side;
    int m_lattice; ///< samples along a side
    std::vector<float> m_samples;
};

} // namespace quillmark
