// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <hwy/targets.h>

#include <array>
#include <cstdint>

namespace quillmark {

// Which of the kinds of vectors that the kernels are compiled for the processor has. Highway's
// library tells that as well, but measures the processor's clock when it is loaded, for longer
// than all kernels take on a frame; so only its headers are used.

/// The kinds that this processor has, as bits of hwy/detect_targets.h.
std::int64_t processorTargets();

/// Tells the best of the kinds that kernels may use; at first all that the processor has.
hwy::ChosenTarget &kernelTarget();

/// One function compiled for each kind of vectors, in the order in which Highway counts them:
/// none, HWY_CHOOSE_TARGET_LIST and HWY_CHOOSE_FALLBACK.
template <typename Function>
using KernelKinds = std::array<Function, HWY_MAX_DYNAMIC_TARGETS + 2>;

template <typename Function>
Function bestKind(const std::array<Function, HWY_MAX_DYNAMIC_TARGETS + 2> &kinds)
{
    return kinds[kernelTarget().GetIndex()];
}

} // namespace quillmark
