// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/Memory.h"

#include <malloc.h>

namespace quillmark {

void shareMemory()
{
#ifdef M_ARENA_MAX // glibc
    ::mallopt(M_ARENA_MAX, 1);
#endif
}

} // namespace quillmark
