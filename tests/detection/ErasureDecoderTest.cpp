// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/ErasureDecoder.h"
#include "CodePictures.h"
#include "detection/SymbolLayout.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <set>
#include <utility>

namespace quillmark {
namespace {

using test::QrLevel;
using test::QrMatrix;

/// A code of exactly this version.
QrMatrix codeOf(int version, QrLevel level)
{
    return test::encodeQr(QByteArray("A slate"), level, version);
}

std::size_t indexOf(const QrMatrix &code, ModulePlace place)
{
    return static_cast<std::size_t>(place.row) * static_cast<std::size_t>(code.size) +
           static_cast<std::size_t>(place.column);
}

void turnOver(ModuleLevels &levels, std::size_t module, float sureness)
{
    levels.levels[module] = levels.levels[module] > 0 ? -sureness : sureness;
}

/// Spoils every so manieth codeword.
ModuleLevels spoilt(const QrMatrix &code, int every, float sureness)
{
    ModuleLevels levels = test::levelsOf(code);
    const auto places = dataPlaces(SymbolPattern((code.size - 17) / 4));
    for (std::size_t i = 0; i < places.size(); i += 8 * static_cast<std::size_t>(every)) {
        turnOver(levels, indexOf(code, places[i]), sureness);
    }
    return levels;
}

void expectWhole(const QrMatrix &code, const std::optional<CorrectedSymbol> &symbol)
{
    ASSERT_TRUE(symbol.has_value());
    EXPECT_TRUE(symbol->isWhole);
    for (int row = 0; row < code.size; ++row) {
        for (int column = 0; column < code.size; ++column) {
            ASSERT_EQ(symbol->bits.dark[indexOf(code, {column, row})], code.isDark(column, row))
                << column << ' ' << row;
        }
    }
}

TEST(SymbolLayout, theCodesOfAllVersionsAndLevelsAreWholeInIt)
{
    // Error correction agrees with nothing but the right order in the right blocks.
    for (int version = 1; version <= mostVersion; ++version) {
        for (const QrLevel level : {QrLevel::L, QrLevel::M, QrLevel::Q, QrLevel::H}) {
            const QrMatrix code = codeOf(version, level);
            ASSERT_EQ(code.size, symbolSide(version));
            SCOPED_TRACE(testing::Message() << version << ' ' << static_cast<int>(level));
            expectWhole(code, correctSymbol(SymbolPattern(version), test::levelsOf(code)));
        }
    }
}

TEST(SymbolLayout, eachModuleHasOnePlace)
{
    for (const int version : {1, 2, 7, 25, 40}) {
        const SymbolPattern pattern(version);
        std::set<std::pair<int, int>> places;
        for (const ModulePlace &place : dataPlaces(pattern)) {
            EXPECT_TRUE(places.emplace(place.column, place.row).second);
            EXPECT_EQ(pattern.at(place.column, place.row), SymbolPattern::Module::data);
        }
        for (const auto &copy : formatPlaces(pattern.side())) {
            for (const ModulePlace &place : copy) {
                EXPECT_EQ(pattern.at(place.column, place.row), SymbolPattern::Module::format);
            }
        }
    }
}

TEST(ErasureDecoder, correctsWhatWasSurelyWrong)
{
    const QrMatrix code = codeOf(10, QrLevel::M);
    expectWhole(code, correctSymbol(SymbolPattern(10), spoilt(code, 8, 1)));
}

TEST(ErasureDecoder, correctsNearlyTwiceAsMuchWhereItIsKnownToBeDoubtful)
{
    // A quarter of the codewords are wrong; without knowing which, an eighth and a bit is too much.
    const QrMatrix code = codeOf(10, QrLevel::M);
    const SymbolPattern pattern(10);
    const auto blind = correctSymbol(pattern, spoilt(code, 4, 1));
    EXPECT_FALSE(blind && blind->isWhole);
    expectWhole(code, correctSymbol(pattern, spoilt(code, 4, 0.1F)));
}

TEST(ErasureDecoder, readsMirroredLevels)
{
    const QrMatrix code = codeOf(7, QrLevel::Q);
    QrMatrix mirrored = code;
    for (int row = 0; row < code.size; ++row) {
        for (int column = 0; column < code.size; ++column) {
            mirrored.cellAt(column, row) = code.isDark(row, column) ? 1 : 0;
        }
    }
    expectWhole(mirrored, correctSymbol(SymbolPattern(7), spoilt(mirrored, 9, 0.5F)));
}

TEST(ErasureDecoder, correctsTheFormatToo)
{
    const QrMatrix code = codeOf(9, QrLevel::L);
    ModuleLevels levels = test::levelsOf(code);
    const auto places = formatPlaces(code.size);
    for (const std::size_t bit : {0U, 4U, 9U}) {
        turnOver(levels, indexOf(code, places[0][bit]), 1);
        turnOver(levels, indexOf(code, places[1][bit + 2]), 1);
    }
    expectWhole(code, correctSymbol(SymbolPattern(9), levels));
}

TEST(ErasureDecoder, marksTheBlocksThatCameOutWhole)
{
    // Version 10 has five blocks at this level; the codewords of one are made unreadable.
    const QrMatrix code = codeOf(10, QrLevel::M);
    const SymbolPattern pattern(10);
    const auto places = dataPlaces(pattern);
    const auto blocks = codewordBlocks(10, ErrorCorrection::medium, places.size() / 8);
    ASSERT_EQ(blocks.size(), 5U);
    ModuleLevels levels = test::levelsOf(code);
    for (const std::size_t codeword : blocks[2].codewords) {
        turnOver(levels, indexOf(code, places[8 * codeword + 3]), 1);
    }
    const auto symbol = correctSymbol(pattern, levels);
    ASSERT_TRUE(symbol.has_value());
    EXPECT_FALSE(symbol->isWhole);
    EXPECT_FALSE(symbol->sure[indexOf(code, places[8 * blocks[2].codewords[0]])]);
    EXPECT_TRUE(symbol->sure[indexOf(code, places[8 * blocks[1].codewords[0]])]);
}

TEST(ErasureDecoder, givesNothingForModulesByChance)
{
    // Small symbols with much error correction in one block, whose format is whole.
    for (const auto &[version, level] :
         {std::pair{4, QrLevel::L}, {5, QrLevel::L}, {3, QrLevel::M}}) {
        const QrMatrix code = codeOf(version, level);
        const SymbolPattern pattern(version);
        const auto places = dataPlaces(pattern);
        std::uint32_t state = 1;
        int whole = 0;
        for (int symbol = 0; symbol < 1500; ++symbol) {
            ModuleLevels levels = test::levelsOf(code);
            for (const ModulePlace &place : places) {
                state = state * 1664525U + 1013904223U;
                levels.levels[indexOf(code, place)] =
                    static_cast<float>(state >> 8U) / 8388608.0F - 1.0F;
            }
            const auto corrected = correctSymbol(pattern, levels);
            whole += corrected && corrected->isWhole ? 1 : 0;
        }
        EXPECT_EQ(whole, 0) << version;
    }
}

} // namespace
} // namespace quillmark
