// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <thread>
#include <vector>

namespace quillmark::test {

/// Cuts the rows 0 to height - 1 into one band a worker and calls band(first, end) for
/// each, in parallel. The bands must not throw.
template <typename Band>
void forEachBand(int height, int workers, const Band &band)
{
    const int bands = std::clamp(workers, 1, std::max(height, 1));
    std::vector<std::jthread> threads;
    for (int i = 1; i < bands; ++i) {
        const int first = static_cast<int>(static_cast<long long>(height) * i / bands);
        const int end = static_cast<int>(static_cast<long long>(height) * (i + 1) / bands);
        threads.emplace_back([&band, first, end] { band(first, end); });
    }
    band(0, static_cast<int>(static_cast<long long>(height) / bands));
}

} // namespace quillmark::test
