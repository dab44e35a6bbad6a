// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/simulator/ModuleGrid.h"
#include "support/simulator/QrMatrix.h"

namespace quillmark::test {

/// Decides modules that have run into each other, as decision feedback equalizers do with
/// symbols of a line (Austin, "Decision-feedback equalization for digital communication over
/// dispersive channels", 1967): from a guess of the bits, how much of each module's tone
/// comes from its 24 neighbours is fitted by least squares, and that share is taken off;
/// what is left gives better bits.
class Equalizer
{
public:
    /// Tones are compared with the mean and the deviation of their surroundings.
    explicit Equalizer(const ModuleGrid &tones);

    /// Better bits from these. Fixed modules stay.
    QrMatrix improve(const QrMatrix &bits) const;

private:
    ModuleGrid m_tones;
};

} // namespace quillmark::test
