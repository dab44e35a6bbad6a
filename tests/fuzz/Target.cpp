// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "fuzz/Target.h"

#include <cstdlib>
#include <iostream>

namespace quillmark::fuzz {

void require(bool holds, const char *property)
{
    if (!holds) {
        std::cerr << "does not hold: " << property << std::endl;
        std::abort();
    }
}

} // namespace quillmark::fuzz
