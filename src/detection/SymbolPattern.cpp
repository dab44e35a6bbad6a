// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SymbolPattern.h"

#include <algorithm>
#include <cstdlib>

namespace quillmark {
namespace {

constexpr int finderSide = 7;
constexpr int timingLine = 6;

} // namespace

std::vector<int> alignmentLines(int version)
{
    if (version == 1) {
        return {};
    }
    // Annex E's table: the first line is 6, the last 7 before the edge, and the others stand
    // apart evenly, by an even number of modules, with what does not fit before the second.
    const int count = version / 7 + 2;
    const int last = symbolSide(version) - 7;
    const int gaps = count - 1;
    const int step = version == 32 ? 26 : (last - timingLine + 2 * gaps - 1) / (2 * gaps) * 2;
    std::vector<int> lines(static_cast<std::size_t>(count));
    lines[0] = timingLine;
    for (int i = 1; i < count; ++i) {
        lines[static_cast<std::size_t>(i)] = last - (count - 1 - i) * step;
    }
    return lines;
}

std::uint32_t versionBits(int version)
{
    constexpr std::uint32_t generator = 0x1F25; // annex D
    const auto data = static_cast<std::uint32_t>(version) << 12U;
    std::uint32_t rest = data;
    for (int bit = 17; bit >= 12; --bit) {
        if ((rest >> static_cast<unsigned>(bit) & 1U) != 0) {
            rest ^= generator << static_cast<unsigned>(bit - 12);
        }
    }
    return data | rest;
}

SymbolPattern::SymbolPattern(int version)
    : m_version(version),
      m_side(symbolSide(version)),
      m_modules(static_cast<std::size_t>(m_side) * static_cast<std::size_t>(m_side), Module::data)
{
    addTiming();
    addFinder(0, 0);
    addFinder(m_side - finderSide, 0);
    addFinder(0, m_side - finderSide);
    const std::vector<int> lines = alignmentLines(version);
    for (const int row : lines) {
        for (const int column : lines) {
            const bool low = row == timingLine || column == timingLine;
            const bool ends = std::min(row, column) == timingLine &&
                              (row == column || std::max(row, column) == lines.back());
            if (!(low && ends)) {
                addAlignment(column, row);
            }
        }
    }
    addFormat();
    if (version >= leastToldVersion) {
        addVersion();
    }
}

void SymbolPattern::set(int column, int row, bool dark)
{
    m_modules[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_side) +
              static_cast<std::size_t>(column)] = dark ? Module::dark : Module::light;
}

void SymbolPattern::setFormat(int column, int row)
{
    m_modules[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_side) +
              static_cast<std::size_t>(column)] = Module::format;
}

/// With its separator, as far as it lies inside the symbol.
void SymbolPattern::addFinder(int left, int top)
{
    for (int row = std::max(top - 1, 0); row <= std::min(top + finderSide, m_side - 1); ++row) {
        for (int column = std::max(left - 1, 0); column <= std::min(left + finderSide, m_side - 1);
             ++column) {
            const int ring = std::max(std::abs(column - left - 3), std::abs(row - top - 3));
            set(column, row, ring != 2 && ring != 4);
        }
    }
}

void SymbolPattern::addAlignment(int column, int row)
{
    for (int y = -2; y <= 2; ++y) {
        for (int x = -2; x <= 2; ++x) {
            set(column + x, row + y, std::max(std::abs(x), std::abs(y)) != 1);
        }
    }
}

void SymbolPattern::addTiming()
{
    for (int i = 0; i < m_side; ++i) {
        set(i, timingLine, i % 2 == 0);
        set(timingLine, i, i % 2 == 0);
    }
}

/// Section 7.9, and the dark module.
void SymbolPattern::addFormat()
{
    for (int i = 0; i < 9; ++i) {
        if (i != timingLine) {
            setFormat(8, i);
            setFormat(i, 8);
        }
    }
    for (int i = 0; i < 8; ++i) {
        setFormat(m_side - 1 - i, 8);
        if (i < 7) {
            setFormat(8, m_side - 1 - i);
        }
    }
    set(8, m_side - 8, true);
}

void SymbolPattern::addVersion()
{
    const std::uint32_t bits = versionBits(m_version);
    for (int i = 0; i < 18; ++i) {
        const bool dark = (bits >> static_cast<unsigned>(i) & 1U) != 0;
        set(m_side - 11 + i % 3, i / 3, dark);
        set(i / 3, m_side - 11 + i % 3, dark);
    }
}

} // namespace quillmark
