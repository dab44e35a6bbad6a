// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SymbolLayout.h"

namespace quillmark {
namespace {

constexpr std::size_t versions = mostVersion;
constexpr int timingColumn = 6;

/// Codewords of error correction in each block, for versions 1 to 40 (table 9).
constexpr std::array<std::array<std::uint8_t, versions>, 4> correctionsPerBlock{
    {{7,  10, 15, 20, 26, 18, 20, 24, 30, 18, 20, 24, 26, 30, 22, 24, 28, 30, 28, 28,
      28, 28, 30, 30, 26, 28, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30},
     {10, 16, 26, 18, 24, 16, 18, 22, 22, 26, 30, 22, 22, 24, 24, 28, 28, 26, 26, 26,
      26, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28, 28},
     {13, 22, 18, 26, 18, 24, 18, 22, 20, 24, 28, 26, 24, 20, 30, 24, 28, 28, 26, 30,
      28, 30, 30, 30, 30, 28, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30},
     {17, 28, 22, 16, 22, 28, 26, 26, 24, 28, 24, 28, 22, 24, 24, 30, 28, 28, 26, 28,
      30, 24, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30, 30}}};

/// Blocks, likewise.
constexpr std::array<std::array<std::uint8_t, versions>, 4> blockCounts{
    {{1, 1, 1, 1,  1,  2,  2,  2,  2,  4,  4,  4,  4,  4,  6,  6,  6,  6,  7,  8,
      8, 9, 9, 10, 12, 12, 12, 13, 14, 15, 16, 17, 18, 19, 19, 20, 21, 22, 24, 25},
     {1,  1,  1,  2,  2,  4,  4,  4,  5,  5,  5,  8,  9,  9,  10, 10, 11, 13, 14, 16,
      17, 17, 18, 20, 21, 23, 25, 26, 28, 29, 31, 33, 35, 37, 38, 40, 43, 45, 47, 49},
     {1,  1,  2,  2,  4,  4,  6,  6,  8,  8,  8,  10, 12, 16, 12, 17, 16, 18, 21, 20,
      23, 23, 25, 27, 29, 34, 34, 35, 38, 40, 43, 45, 48, 51, 53, 56, 59, 62, 65, 68},
     {1,  1,  2,  4,  4,  4,  5,  6,  8,  8,  11, 11, 16, 16, 18, 16, 19, 21, 25, 25,
      25, 34, 30, 32, 35, 37, 40, 42, 45, 48, 51, 54, 57, 60, 63, 66, 70, 74, 77, 81}}};

} // namespace

std::array<bool, 15> SymbolFormat::bits() const
{
    // Table 12, in the order of ErrorCorrection.
    constexpr std::array<std::uint32_t, 4> indicators{1, 0, 3, 2};
    const std::uint32_t data =
        indicators[static_cast<std::size_t>(correction)] << 3U | static_cast<std::uint32_t>(mask);
    std::uint32_t rest = data;
    for (int i = 0; i < 10; ++i) {
        rest = rest << 1U ^ (rest >> 9U) * 0x537U; // the generator polynomial of annex C
    }
    const std::uint32_t told = (data << 10U | rest) ^ 0x5412U;
    std::array<bool, 15> result{};
    for (std::size_t i = 0; i < result.size(); ++i) {
        result[i] = (told >> i & 1U) != 0;
    }
    return result;
}

bool isMasked(int mask, int column, int row)
{
    const int product = column * row;
    switch (mask) {
    case 0:
        return (row + column) % 2 == 0;
    case 1:
        return row % 2 == 0;
    case 2:
        return column % 3 == 0;
    case 3:
        return (row + column) % 3 == 0;
    case 4:
        return (row / 2 + column / 3) % 2 == 0;
    case 5:
        return product % 2 + product % 3 == 0;
    case 6:
        return (product % 2 + product % 3) % 2 == 0;
    default:
        return ((row + column) % 2 + product % 3) % 2 == 0;
    }
}

std::array<std::array<ModulePlace, 15>, 2> formatPlaces(int side)
{
    std::array<std::array<ModulePlace, 15>, 2> places{};
    for (int i = 0; i < 15; ++i) {
        const auto bit = static_cast<std::size_t>(i);
        // Around the timing pattern, which crosses both arms.
        const int line = i < 6 ? i : i < 8 ? i + 1 : i == 8 ? 7 : 14 - i;
        places[0][bit] = i < 8 ? ModulePlace{8, line} : ModulePlace{line, 8};
        places[1][bit] = i < 8 ? ModulePlace{side - 1 - i, 8} : ModulePlace{8, side - 15 + i};
    }
    return places;
}

std::vector<ModulePlace> dataPlaces(const SymbolPattern &pattern)
{
    std::vector<ModulePlace> places;
    const int side = pattern.side();
    bool upwards = true;
    for (int right = side - 1; right > 0; right -= 2) {
        if (right == timingColumn) {
            --right;
        }
        for (int i = 0; i < side; ++i) {
            const int row = upwards ? side - 1 - i : i;
            for (const int column : {right, right - 1}) {
                if (pattern.at(column, row) == SymbolPattern::Module::data) {
                    places.push_back({column, row});
                }
            }
        }
        upwards = !upwards;
    }
    return places;
}

std::vector<CodewordBlock> codewordBlocks(int version, ErrorCorrection correction,
                                          std::size_t codewords)
{
    const auto level = static_cast<std::size_t>(correction);
    const auto index = static_cast<std::size_t>(version - 1);
    const std::size_t count = blockCounts[level][index];
    const std::size_t corrections = correctionsPerBlock[level][index];
    const std::size_t shortBlocks = count - codewords % count;
    const std::size_t shortData = codewords / count - corrections;
    std::vector<CodewordBlock> blocks(count, {{}, static_cast<int>(corrections)});
    std::size_t next = 0;
    for (std::size_t i = 0; i <= shortData; ++i) {
        for (std::size_t block = i < shortData ? 0 : shortBlocks; block < count; ++block) {
            blocks[block].codewords.push_back(next++);
        }
    }
    for (std::size_t i = 0; i < corrections; ++i) {
        for (CodewordBlock &block : blocks) {
            block.codewords.push_back(next++);
        }
    }
    return blocks;
}

} // namespace quillmark
