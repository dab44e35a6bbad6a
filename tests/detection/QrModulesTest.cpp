// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/QrDecode.h"
#include "support/Printers.h"
#include "support/simulator/QrMatrix.h"
#include "support/simulator/Random.h"

#include <gtest/gtest.h>

namespace quillmark {
namespace {

const QString content = QStringLiteral("Modules of one symbol");

test::QrMatrix code()
{
    return test::encodeQr(content.toUtf8(), test::QrLevel::M, 7);
}

ModuleBits bitsOf(const test::QrMatrix &matrix, bool mirrored = false)
{
    ModuleBits bits{matrix.size, {}};
    for (int row = 0; row < matrix.size; ++row) {
        for (int column = 0; column < matrix.size; ++column) {
            bits.dark.push_back(mirrored ? matrix.isDark(row, column) : matrix.isDark(column, row));
        }
    }
    return bits;
}

TEST(QrModules, areReadAsTheyAreAndMirrored)
{
    EXPECT_EQ(decodeModules(bitsOf(code())), content);
    EXPECT_EQ(decodeModules(bitsOf(code(), true)), content);
}

TEST(QrModules, areReadInTheSmallestAndTheLargestVersion)
{
    EXPECT_EQ(decodeModules(bitsOf(test::encodeQr("A", test::QrLevel::L, 1))), QStringLiteral("A"));
    EXPECT_EQ(decodeModules(bitsOf(test::encodeQr("A", test::QrLevel::L, 40))),
              QStringLiteral("A"));
}

TEST(QrModules, mayBeWrongAsFarAsErrorCorrectionGoes)
{
    ModuleBits bits = bitsOf(code());
    // Level M puts up with about 15 % of wrong codewords.
    for (int row = 20; row < 26; ++row) {
        for (int column = 30; column < 36; ++column) {
            const auto i = static_cast<std::size_t>(row * bits.side + column);
            bits.dark[i] = !bits.dark[i];
        }
    }
    EXPECT_EQ(decodeModules(bits), content);
}

TEST(QrModules, thatAreNoSymbolGiveNothing)
{
    test::Random random(8);
    ModuleBits bits{45, {}};
    for (int i = 0; i < 45 * 45; ++i) {
        bits.dark.push_back(random.chance(0.5));
    }
    EXPECT_EQ(decodeModules(bits), std::nullopt);
    bits.dark.assign(bits.dark.size(), true);
    EXPECT_EQ(decodeModules(bits), std::nullopt);
    bits.dark.assign(bits.dark.size(), false);
    EXPECT_EQ(decodeModules(bits), std::nullopt);
}

} // namespace
} // namespace quillmark
