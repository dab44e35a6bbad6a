// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace quillmark::test {

/// A file made to exhaust memory or patience.
struct Bomb {
    std::string name; ///< letters and digits
    std::string how;  ///< in words
    std::function<void(const std::filesystem::path &)> write;
    /// What there is to be read; none where the file is to be refused.
    double megapixels = 0;
};

inline void PrintTo(const Bomb &bomb, std::ostream *out)
{
    *out << bomb.how;
}

std::vector<Bomb> jpegBombs();
std::vector<Bomb> tiffBombs();
std::vector<Bomb> packedBombs();

} // namespace quillmark::test
