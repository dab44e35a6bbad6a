// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/KernelTarget.h"

namespace quillmark {

std::int64_t processorTargets()
{
    std::int64_t targets = HWY_STATIC_TARGET;
#if HWY_ARCH_X86
    // Of what Highway wants beside these, all processors that have them have the rest.
    __builtin_cpu_init();
    const bool hasSsse3 = __builtin_cpu_supports("ssse3") != 0;
    const bool hasSse4 = hasSsse3 && __builtin_cpu_supports("sse4.2") != 0 &&
                         __builtin_cpu_supports("aes") != 0 &&
                         __builtin_cpu_supports("pclmul") != 0;
    const bool hasAvx2 = hasSse4 && __builtin_cpu_supports("avx2") != 0 &&
                         __builtin_cpu_supports("fma") != 0 && __builtin_cpu_supports("bmi") != 0 &&
                         __builtin_cpu_supports("bmi2") != 0;
    const bool hasAvx3 =
        hasAvx2 && __builtin_cpu_supports("avx512f") != 0 &&
        __builtin_cpu_supports("avx512vl") != 0 && __builtin_cpu_supports("avx512bw") != 0 &&
        __builtin_cpu_supports("avx512dq") != 0 && __builtin_cpu_supports("avx512cd") != 0;
    targets |= (hasSsse3 ? HWY_SSSE3 : 0) | (hasSse4 ? HWY_SSE4 : 0) | (hasAvx2 ? HWY_AVX2 : 0) |
               (hasAvx3 ? HWY_AVX3 : 0);
#endif
    return targets;
}

hwy::ChosenTarget &kernelTarget()
{
    struct Target : hwy::ChosenTarget {
        Target() { Update(processorTargets()); }
    };
    static Target target;
    return target;
}

} // namespace quillmark
