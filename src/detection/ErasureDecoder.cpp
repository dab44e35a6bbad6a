// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/ErasureDecoder.h"

#include "detection/SymbolLayout.h"

extern "C" {
#include <fec.h>
}

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <numeric>
#include <vector>

namespace quillmark {
namespace {

constexpr int bitsPerCodeword = 8;
constexpr int mostCodewords = 255; // of a Reed-Solomon block over bytes
constexpr int erasedAtOnce = 2;
// Where codewords were erased, so many of the block's corrections must be left over in the end:
// with none, one block of chance in six comes out as some other block, with two, one in a million.
constexpr int leftOver = 2;
// Of the levels of a block, what may speak against its correction.
constexpr double mostAgainst = 0.3;

/// A symbol's levels, seen straight or mirrored.
class Levels
{
public:
    Levels(const ModuleLevels &levels, bool mirrored) : m_levels(levels), m_mirrored(mirrored) {}

    float at(ModulePlace place) const
    {
        return m_mirrored ? m_levels.at(place.row, place.column)
                          : m_levels.at(place.column, place.row);
    }
    std::size_t indexOf(ModulePlace place) const
    {
        const int row = m_mirrored ? place.column : place.row;
        const int column = m_mirrored ? place.row : place.column;
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(m_levels.side) +
               static_cast<std::size_t>(column);
    }
    int side() const { return m_levels.side; }

private:
    const ModuleLevels &m_levels;
    bool m_mirrored;
};

struct FormatGuess {
    SymbolFormat format;
    bool mirrored = false;
    float agreement = std::numeric_limits<float>::lowest();
};

/// The format that agrees best with both its copies, read either way.
FormatGuess likeliestFormat(const ModuleLevels &levels)
{
    const auto places = formatPlaces(levels.side);
    FormatGuess best;
    for (const bool mirrored : {false, true}) {
        const Levels seen(levels, mirrored);
        for (const auto correction : {ErrorCorrection::low, ErrorCorrection::medium,
                                      ErrorCorrection::quartile, ErrorCorrection::high}) {
            for (int mask = 0; mask < 8; ++mask) {
                const SymbolFormat format{correction, mask};
                const auto bits = format.bits();
                float agreement = 0;
                for (const auto &copy : places) {
                    for (std::size_t i = 0; i < bits.size(); ++i) {
                        const float level = std::clamp(seen.at(copy[i]), -1.0F, 1.0F);
                        agreement += bits[i] ? level : -level;
                    }
                }
                if (agreement > best.agreement) {
                    best = {format, mirrored, agreement};
                }
            }
        }
    }
    return best;
}

/// A codeword as it was read.
struct ReadCodeword {
    std::uint8_t value = 0;
    float sureness = 0; ///< of its least sure bit
};

/// Blocks of one length with one number of corrections (section 7.5.2, annex A).
class BlockCode
{
public:
    BlockCode(int length, int corrections)
        : m_code(init_rs_char(bitsPerCodeword, 0x11d, 0, 1, corrections, mostCodewords - length))
    {
        if (m_code == nullptr) {
            throw std::bad_alloc();
        }
    }
    ~BlockCode() { free_rs_char(m_code); }
    BlockCode(const BlockCode &) = delete;
    BlockCode &operator=(const BlockCode &) = delete;

    bool correct(std::vector<std::uint8_t> &block, std::vector<int> &erased) const
    {
        // The library writes the places that it corrected behind the erased ones.
        const auto count = static_cast<int>(erased.size());
        erased.resize(mostCodewords);
        return decode_rs_char(m_code, block.data(), erased.data(), count) >= 0;
    }

private:
    void *m_code;
};

class SymbolDecoder
{
public:
    SymbolDecoder(const SymbolPattern &pattern, const ModuleLevels &levels,
                  const FormatGuess &guess)
        : m_pattern(pattern),
          m_levels(levels, guess.mirrored),
          m_guess(guess),
          m_places(dataPlaces(pattern))
    {
        readCodewords();
    }

    std::optional<CorrectedSymbol> run()
    {
        CorrectedSymbol symbol = uncorrected();
        std::size_t whole = 0;
        const auto blocks =
            codewordBlocks(m_pattern.version(), m_guess.format.correction, m_codewords.size());
        for (const CodewordBlock &block : blocks) {
            if (const auto corrected = correctBlock(block)) {
                place(block, *corrected, symbol);
                ++whole;
            }
        }
        if (whole == 0) {
            return std::nullopt;
        }
        symbol.isWhole = whole == blocks.size();
        return symbol;
    }

private:
    void readCodewords()
    {
        m_codewords.resize(m_places.size() / bitsPerCodeword);
        for (std::size_t i = 0; i < m_codewords.size(); ++i) {
            ReadCodeword codeword{0, std::numeric_limits<float>::max()};
            for (int bit = 0; bit < bitsPerCodeword; ++bit) {
                const ModulePlace place = placeOf(i, bit);
                const float level = m_levels.at(place);
                const bool dark = level > 0;
                const bool one = dark != isMasked(m_guess.format.mask, place.column, place.row);
                codeword.value = static_cast<std::uint8_t>(codeword.value << 1 | (one ? 1 : 0));
                codeword.sureness = std::min(codeword.sureness, std::abs(level));
            }
            m_codewords[i] = codeword;
        }
    }

    /// Bits are counted from the most significant one on.
    ModulePlace placeOf(std::size_t codeword, int bit) const
    {
        return m_places[codeword * bitsPerCodeword + static_cast<std::size_t>(bit)];
    }

    std::optional<std::vector<std::uint8_t>> correctBlock(const CodewordBlock &block) const
    {
        const BlockCode code(static_cast<int>(block.codewords.size()), block.corrections);
        std::vector<std::uint8_t> values;
        std::vector<int> doubtful(block.codewords.size());
        std::iota(doubtful.begin(), doubtful.end(), 0);
        for (const std::size_t codeword : block.codewords) {
            values.push_back(m_codewords[codeword].value);
        }
        std::ranges::stable_sort(doubtful, {}, [&](int place) {
            return m_codewords[block.codewords[static_cast<std::size_t>(place)]].sureness;
        });
        for (int count = 0; count <= block.corrections - leftOver; count += erasedAtOnce) {
            std::vector<std::uint8_t> corrected = values;
            std::vector<int> erased(doubtful.begin(), doubtful.begin() + count);
            if (!code.correct(corrected, erased)) {
                continue;
            }
            const auto others =
                std::count_if(doubtful.begin() + count, doubtful.end(), [&](int place) {
                    const auto i = static_cast<std::size_t>(place);
                    return corrected[i] != values[i];
                });
            const bool isSafe = count == 0 || 2 * others + count <= block.corrections - leftOver;
            if (isSafe && isLikely(block, corrected)) {
                return corrected;
            }
        }
        return std::nullopt;
    }

    /// Whether what was corrected was doubtful before.
    bool isLikely(const CodewordBlock &block, const std::vector<std::uint8_t> &corrected) const
    {
        double against = 0;
        double all = 0;
        for (std::size_t i = 0; i < corrected.size(); ++i) {
            const std::size_t codeword = block.codewords[i];
            const unsigned wrong = corrected[i] ^ m_codewords[codeword].value;
            for (int bit = 0; bit < bitsPerCodeword; ++bit) {
                const double level = std::abs(m_levels.at(placeOf(codeword, bit)));
                all += level;
                against += (wrong >> static_cast<unsigned>(bitsPerCodeword - 1 - bit) & 1U) != 0
                               ? level
                               : 0;
            }
        }
        return against < mostAgainst * all;
    }

    CorrectedSymbol uncorrected() const
    {
        const int side = m_levels.side();
        const auto count = static_cast<std::size_t>(side) * static_cast<std::size_t>(side);
        CorrectedSymbol symbol{{side, std::vector<bool>(count)}, std::vector<bool>(count), false};
        for (int row = 0; row < side; ++row) {
            for (int column = 0; column < side; ++column) {
                const ModulePlace place{column, row};
                const SymbolPattern::Module module = m_pattern.at(column, row);
                const std::size_t i = m_levels.indexOf(place);
                symbol.sure[i] = SymbolPattern::isKnown(module);
                symbol.bits.dark[i] =
                    symbol.sure[i] ? module == SymbolPattern::Module::dark : m_levels.at(place) > 0;
            }
        }
        const auto bits = m_guess.format.bits();
        for (const auto &copy : formatPlaces(side)) {
            for (std::size_t bit = 0; bit < bits.size(); ++bit) {
                symbol.bits.dark[m_levels.indexOf(copy[bit])] = bits[bit];
            }
        }
        return symbol;
    }

    void place(const CodewordBlock &block, const std::vector<std::uint8_t> &values,
               CorrectedSymbol &symbol) const
    {
        for (std::size_t i = 0; i < values.size(); ++i) {
            for (int bit = 0; bit < bitsPerCodeword; ++bit) {
                const ModulePlace place = placeOf(block.codewords[i], bit);
                const bool one =
                    (values[i] >> static_cast<unsigned>(bitsPerCodeword - 1 - bit) & 1U) != 0;
                const std::size_t module = m_levels.indexOf(place);
                symbol.bits.dark[module] =
                    one != isMasked(m_guess.format.mask, place.column, place.row);
                symbol.sure[module] = true;
            }
        }
    }

    const SymbolPattern &m_pattern;
    Levels m_levels;
    FormatGuess m_guess;
    std::vector<ModulePlace> m_places;
    std::vector<ReadCodeword> m_codewords;
};

} // namespace

double formatAgreement(const ModuleLevels &levels)
{
    double all = 0;
    for (const auto &copy : formatPlaces(levels.side)) {
        for (const ModulePlace &place : copy) {
            all += std::min(std::abs(static_cast<double>(levels.at(place.column, place.row))), 1.0);
        }
    }
    return all > 0 ? static_cast<double>(likeliestFormat(levels).agreement) / all : 0;
}

std::optional<CorrectedSymbol> correctSymbol(const SymbolPattern &pattern,
                                             const ModuleLevels &levels)
{
    return SymbolDecoder(pattern, levels, likeliestFormat(levels)).run();
}

} // namespace quillmark
