// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/QrReader.h"
#include "support/Printers.h"
#include "support/simulator/PlainCode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillmark {
namespace {

using test::drawCode;
using test::QrMode;
using test::QrSegment;
using testing::ElementsAre;
using testing::Optional;

constexpr int eciLatin1 = 3;
constexpr int eciUtf8 = 26;

std::vector<std::optional<QString>> readSegments(const std::vector<QrSegment> &segments)
{
    return readQrCodes(drawCode(encodeQrSegments(segments), 4), 1);
}

struct Text {
    const char *name;
    QByteArray bytes;
};

class QrUtf8Test : public testing::TestWithParam<Text>
{};

TEST_P(QrUtf8Test, bytesWithoutCharacterSetAreReadAsUtf8)
{
    const QByteArray &bytes = GetParam().bytes;
    EXPECT_THAT(readSegments({{QrMode::bytes, bytes}}),
                ElementsAre(Optional(QString::fromUtf8(bytes))));
}

INSTANTIATE_TEST_SUITE_P(
    QrReader, QrUtf8Test,
    testing::Values(Text{"ascii", "{\"iso\":400}"}, Text{"norwegian", "Grünerløkka"},
                    Text{"oneAccent", "Zoë"}, Text{"japanese", "夜明けの写真"},
                    Text{"halfWidthKatakana", "ｶﾒﾗ"}, Text{"emoji", "🌫 fog 📷"},
                    Text{"cyrillic", "Зенит"}, Text{"arabic", "كاميرا"}, Text{"symbols", "© ± ½ °"},
                    Text{"mixed", "{\"a\":\"é漢字🌫\"}"}, Text{"combining", "A\xCC\x8A"}),
    [](const auto &text) { return text.param.name; });

TEST(QrText, bytesThatAreNotUtf8AreGuessed)
{
    // "Grünerløkka" in Latin-1.
    EXPECT_THAT(readSegments({{QrMode::bytes, QByteArray("Gr\xFCnerl\xF8kka")}}),
                ElementsAre(Optional(QStringLiteral("Grünerløkka"))));
}

TEST(QrText, aDeclaredCharacterSetIsTakenAtItsWord)
{
    EXPECT_THAT(readSegments({{QrMode::bytes, "Grünerløkka 夜", eciUtf8}}),
                ElementsAre(Optional(QStringLiteral("Grünerløkka 夜"))));
    // These bytes would be UTF-8 for "ü".
    EXPECT_THAT(readSegments({{QrMode::bytes, "\xC3\xBC", eciLatin1}}),
                ElementsAre(Optional(QStringLiteral("Ã¼"))));
}

TEST(QrText, digitsAndCapitalsAreReadInTheirOwnModes)
{
    EXPECT_THAT(readSegments({{QrMode::numeric, "0123456789012345"}}),
                ElementsAre(Optional(QStringLiteral("0123456789012345"))));
    EXPECT_THAT(readSegments({{QrMode::alphanumeric, "ROLL 12 $%*+-./:"}}),
                ElementsAre(Optional(QStringLiteral("ROLL 12 $%*+-./:"))));
}

TEST(QrText, kanjiAreReadInTheirOwnMode)
{
    // "点" and "茗" in Shift JIS, ISO/IEC 18004 section 7.4.6.
    EXPECT_THAT(readSegments({{QrMode::kanji, "\x93\x5F\xE4\xAA"}}),
                ElementsAre(Optional(QStringLiteral("点茗"))));
}

TEST(QrText, segmentsOfSeveralModesKeepTheirOrder)
{
    EXPECT_THAT(readSegments({{QrMode::alphanumeric, "ROLL "},
                              {QrMode::numeric, "12"},
                              {QrMode::bytes, " Grünerløkka "},
                              {QrMode::kanji, "\x93\x5F"},
                              {QrMode::bytes, " 🌫"}}),
                ElementsAre(Optional(QStringLiteral("ROLL 12 Grünerløkka 点 🌫"))));
}

} // namespace
} // namespace quillmark
