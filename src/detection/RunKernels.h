// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>

namespace quillmark {

// Loops over the runs of light and dark in a row, as vector code that suits the processor (found
// out when the program runs). ScalarKernels.h has the same without vectors. Any thread.

/// What both write at most beyond what they give.
inline constexpr std::size_t runSlack = 64;

/// The indices, from 1 on, of numbers whose sign is not that of the one before; gives how many.
/// Room for width + runSlack of them.
std::size_t findSignChanges(const std::int16_t *flat, std::size_t width, std::int32_t *edges);

/// Where between two pixels each of these changes lies, in pixels from the first one's middle.
void placeEdges(const std::int16_t *flat, const std::int32_t *edges, std::size_t count,
                float *places);

/// The indices of places from which on five runs stand as 1 : 1 : 3 : 1 : 1, as they do across
/// a QR finder pattern (ISO/IEC 18004 section 12 a), with modules of 1.6 to 9 pixels; gives how
/// many. Spread ink and blur shift every edge by up to a third of a module. Room for
/// count + runSlack of them.
std::size_t findFinderRuns(const float *places, std::size_t count, std::int32_t *found);

} // namespace quillmark
