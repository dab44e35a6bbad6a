// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "fuzz/Frame.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const quillmark::fuzz::TimeLimit limit;
    quillmark::fuzz::readFrame({data, size});
    return 0;
}
