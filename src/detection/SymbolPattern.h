// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace quillmark {

inline constexpr int leastVersion = 1;
inline constexpr int mostVersion = 40;
/// From this version on a symbol says its version (ISO/IEC 18004:2015 section 7.10).
inline constexpr int leastToldVersion = 7;

/// Modules along a side of a symbol of a version (ISO/IEC 18004:2015 section 6.3.1).
constexpr int symbolSide(int version)
{
    return 17 + 4 * version;
}

/// The rows, and likewise the columns, on which middles of alignment patterns stand (annex E);
/// none for version 1. At the three finder patterns there is none.
std::vector<int> alignmentLines(int version);

/// The 18 bits in which a version is told, the most significant first (section 7.10).
std::uint32_t versionBits(int version);

/// What each module of a symbol of one version is before anything is read.
class SymbolPattern
{
public:
    enum class Module : std::uint8_t {
        data,   ///< not known
        format, ///< not known, and no part of the data either
        light,
        dark,
    };

    explicit SymbolPattern(int version);

    int version() const { return m_version; }
    int side() const { return m_side; }
    Module at(int column, int row) const
    {
        return m_modules[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_side) +
                         static_cast<std::size_t>(column)];
    }
    static bool isKnown(Module module) { return module >= Module::light; }

private:
    void set(int column, int row, bool dark);
    void setFormat(int column, int row);
    void addFinder(int left, int top);
    void addAlignment(int column, int row);
    void addTiming();
    void addFormat();
    void addVersion();

    int m_version;
    int m_side;
    std::vector<Module> m_modules;
};

} // namespace quillmark
