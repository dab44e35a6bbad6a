// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/Memory.h"

#include <malloc.h>

namespace quillmark {

void returnMemory()
{
#ifdef M_TRIM_THRESHOLD              // glibc, which stops learning once this is set: mallopt(3)
    constexpr int kept = 256 * 1024; // bytes at the end of each pool
    ::mallopt(M_TRIM_THRESHOLD, kept);
#endif
}

} // namespace quillmark
