// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/ModuleEqualiser.h"
#include "detection/RegionImage.h"
#include "detection/SymbolGrid.h"

#include <optional>

namespace quillmark {

/// The grid moved to where what is held to be dark and light lies on the picture, block by
/// block: for codes on curled cards and under lenses that bend lines, between their alignment
/// patterns. Nothing where that cannot be told.
std::optional<SymbolGrid> refineGrid(const RegionImage &picture, const SymbolGrid &grid,
                                     const ModuleLevels &held);

} // namespace quillmark
