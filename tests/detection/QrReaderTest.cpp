// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/QrReader.h"
#include "support/Printers.h"
#include "support/simulator/PlainCode.h"
#include "support/simulator/Random.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace quillmark {
namespace {

using test::drawCode;
using test::encodeQr;
using test::negativeOf;
using test::sideBySide;
using test::storedWithOrientation;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;
using testing::UnorderedElementsAre;

const QByteArray slate = R"({"version":2,"session_id":"a1b2","iso":400})";
const QString slateText = QString::fromUtf8(slate);

auto isText(const QString &text)
{
    return ElementsAre(Optional(text));
}

LumaImage plainImage(int width, int height, std::uint8_t level)
{
    LumaImage image;
    image.width = width;
    image.height = height;
    image.pixels.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), level);
    return image;
}

TEST(QrReader, readsACodeDarkOnLight)
{
    EXPECT_THAT(readQrCodes(drawCode(encodeQr(slate), 4), 1), isText(slateText));
}

TEST(QrReader, readsACodeLightOnDark)
{
    EXPECT_THAT(readQrCodes(negativeOf(drawCode(encodeQr(slate), 4)), 1), isText(slateText));
}

TEST(QrReader, readsACodeWhicheverWayTheFrameIsStored)
{
    const LumaImage upright = drawCode(encodeQr(slate), 5);
    for (int orientation = 1; orientation <= 8; ++orientation) {
        SCOPED_TRACE(orientation);
        const LumaImage stored = storedWithOrientation(upright, orientation);
        EXPECT_THAT(readQrCodes(stored, static_cast<std::uint32_t>(orientation)),
                    isText(slateText));
        EXPECT_THAT(readQrCodes(negativeOf(stored), static_cast<std::uint32_t>(orientation)),
                    isText(slateText));
    }
}

TEST(QrReader, takesAnOrientationThatMeansNothingAsUpright)
{
    const LumaImage image = drawCode(encodeQr(slate), 4);
    for (const std::uint32_t orientation : {0U, 9U, std::numeric_limits<std::uint32_t>::max()}) {
        EXPECT_THAT(readQrCodes(image, orientation), isText(slateText)) << orientation;
    }
}

TEST(QrReader, readsModulesFromOnePixelToFortyPixels)
{
    for (const int modulePixels : {1, 2, 3, 5, 10, 20, 40}) {
        SCOPED_TRACE(modulePixels);
        const LumaImage image = drawCode(encodeQr(slate), modulePixels);
        EXPECT_THAT(readQrCodes(image, 1), isText(slateText));
        EXPECT_THAT(readQrCodes(negativeOf(image), 1), isText(slateText));
    }
}

TEST(QrReader, readsTheSmallestCodeAtOnePixelAModule)
{
    // Version 1 with its quiet zone: 29 x 29 pixels.
    const LumaImage image = drawCode(encodeQr("{}", test::QrLevel::L), 1);
    ASSERT_EQ(image.width, 29);
    EXPECT_THAT(readQrCodes(image, 1), isText(QStringLiteral("{}")));
}

TEST(QrReader, readsDenseCodes)
{
    for (const int version : {10, 17, 25, 32, 40}) {
        SCOPED_TRACE(version);
        const test::QrMatrix code = encodeQr(slate, test::QrLevel::M, version);
        ASSERT_EQ(code.size, 17 + 4 * version);
        EXPECT_THAT(readQrCodes(drawCode(code, 3), 1), isText(slateText));
    }
}

TEST(QrReader, deliversEveryCodeOfAFrame)
{
    const LumaImage both =
        sideBySide(drawCode(encodeQr(slate), 4), drawCode(encodeQr(R"({"version":2})"), 5));
    EXPECT_THAT(
        readQrCodes(both, 1),
        UnorderedElementsAre(Optional(slateText), Optional(QStringLiteral(R"({"version":2})"))));
}

TEST(QrReader, deliversTwoCodesOfOneTextTwice)
{
    const LumaImage one = drawCode(encodeQr(slate), 4);
    EXPECT_THAT(readQrCodes(sideBySide(one, one), 1),
                ElementsAre(Optional(slateText), Optional(slateText)));
}

TEST(QrReader, looksOnBesideACodeThatIsNoSlate)
{
    // The other code is read by the first look, the negative slate of small modules is not.
    const LumaImage poster = drawCode(encodeQr("https://example.org/"), 20);
    LumaImage dark = negativeOf(drawCode(encodeQr(slate, test::QrLevel::L, 10), 2));
    const std::vector<std::optional<QString>> codes = readQrCodes(sideBySide(poster, dark), 1);
    EXPECT_THAT(codes, UnorderedElementsAre(Optional(QStringLiteral("https://example.org/")),
                                            Optional(slateText)));
}

TEST(QrReader, readsADarkCodeBesideALightOne)
{
    const LumaImage both = sideBySide(drawCode(encodeQr(slate), 4),
                                      negativeOf(drawCode(encodeQr(R"({"iso":100})"), 4)));
    EXPECT_THAT(
        readQrCodes(both, 1),
        UnorderedElementsAre(Optional(slateText), Optional(QStringLiteral(R"({"iso":100})"))));
}

TEST(QrReader, namesACodeThatCannotBeUnderstoodWithoutText)
{
    test::QrMatrix code = encodeQr(slate, test::QrLevel::L, 5);
    // Everything but the finder and timing patterns is lost.
    for (int row = 9; row < code.size; ++row) {
        for (int column = 9; column < code.size; ++column) {
            if (column < code.size - 8 || row > 8) {
                code.cellAt(column, row) =
                    static_cast<std::uint8_t>((row * 7 + column * column / 3) % 2);
            }
        }
    }
    const LumaImage image = drawCode(code, 5);
    EXPECT_THAT(readQrCodes(image, 1), ElementsAre(std::nullopt));
    EXPECT_THAT(readQrCodes(negativeOf(image), 1), ElementsAre(std::nullopt));
}

TEST(QrReader, givesNothingForPicturesWithoutContent)
{
    EXPECT_THAT(readQrCodes(LumaImage(), 1), IsEmpty());
    for (const auto &[width, height] : {std::pair(1, 1),
                                        {1, 5000},
                                        {5000, 1},
                                        {2, 2},
                                        {20, 20},
                                        {21, 21},
                                        {179, 181},
                                        {1000, 3},
                                        {3000, 2000}}) {
        SCOPED_TRACE(testing::Message() << width << " x " << height);
        for (const int level : {0, 128, 255}) {
            EXPECT_THAT(readQrCodes(plainImage(width, height, static_cast<std::uint8_t>(level)), 1),
                        IsEmpty());
        }
    }
}

TEST(QrReader, findsNoCodeInNoise)
{
    test::Random random(3);
    for (int i = 0; i < 60; ++i) {
        LumaImage image = plainImage(1 + random.below(700), 1 + random.below(300), 0);
        const int grain = 1 + random.below(6);
        for (std::size_t at = 0; at < image.pixels.size(); ++at) {
            const std::size_t source = at / static_cast<std::size_t>(grain);
            image.pixels[at] = static_cast<std::uint8_t>(test::hash64(source) >> 56);
        }
        EXPECT_THAT(readQrCodes(image, 1), IsEmpty())
            << image.width << " x " << image.height << ", grain " << grain;
    }
}

TEST(QrReader, readsACodeThatTouchesTheEdgesOfThePicture)
{
    EXPECT_THAT(readQrCodes(drawCode(encodeQr(slate), 4, 1), 1), isText(slateText));
}

} // namespace
} // namespace quillmark
