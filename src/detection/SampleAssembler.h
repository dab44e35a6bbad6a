// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/TiffShape.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace quillmark {

/// Makes rows of samples, as SampleConverter takes them, from what the planes of a TIFF image have
/// stored.
class SampleAssembler
{
public:
    explicit SampleAssembler(const TiffShape &shape);

    /// `planes` has the stored row of each plane, each of at least `count` pixels. The
    /// samples stay valid until the next call, and no longer than what they came from.
    const void *assemble(std::span<const std::uint8_t *const> planes, int count);

    /// The same from row `y` of a block of units of luma and chroma in bytes, of which only
    /// luma is given where the layout has no more.
    const void *assembleUnits(const std::uint8_t *block, int y, int count);

private:
    const std::uint8_t *unpack(const std::uint8_t *stored, int count,
                               std::vector<std::uint8_t> &out) const;

    const TiffShape &m_shape;
    std::vector<std::vector<std::uint8_t>> m_unpacked; ///< per plane
    std::vector<std::uint8_t> m_row;
};

} // namespace quillmark
