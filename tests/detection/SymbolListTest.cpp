// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SymbolList.h"
#include "payload/SlatePayloadJson.h"
#include "support/Printers.h"
#include "support/Samples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillmark {
namespace {

using testing::ElementsAre;
using testing::Optional;

QrSymbol symbolAt(double left, double top, const char *text)
{
    QrSymbol symbol;
    if (text != nullptr) {
        symbol.text = QString::fromLatin1(text);
    }
    symbol.corners = {{{left, top}, {left + 10, top}, {left + 10, top + 10}, {left, top + 10}}};
    return symbol;
}

TEST(SymbolList, keepsTheOrderInWhichCodesWereFound)
{
    SymbolList list;
    list.add(symbolAt(100, 0, "first"));
    list.add(symbolAt(0, 0, "second"));
    EXPECT_THAT(list.texts(),
                ElementsAre(Optional(QStringLiteral("first")), Optional(QStringLiteral("second"))));
}

TEST(SymbolList, aCodeSeenTwiceIsOneCode)
{
    SymbolList list;
    list.add(symbolAt(0, 0, "text"));
    list.add(symbolAt(2, 1, "text"));
    EXPECT_THAT(list.texts(), ElementsAre(Optional(QStringLiteral("text"))));
}

TEST(SymbolList, aTextReplacesWhatWasNotUnderstoodInThatPlace)
{
    SymbolList list;
    list.add(symbolAt(0, 0, nullptr));
    list.add(symbolAt(50, 0, "other"));
    list.add(symbolAt(1, 1, "text"));
    list.add(symbolAt(0, 1, nullptr));
    EXPECT_THAT(list.texts(),
                ElementsAre(Optional(QStringLiteral("text")), Optional(QStringLiteral("other"))));
}

TEST(SymbolList, mirroredCornersStandInTheSamePlace)
{
    QrSymbol mirrored = symbolAt(0, 0, "text");
    std::swap(mirrored.corners[1], mirrored.corners[3]);
    SymbolList list;
    list.add(mirrored);
    list.add(symbolAt(1, 0, "text"));
    EXPECT_THAT(list.texts(), testing::SizeIs(1));
}

TEST(SymbolList, onlyAWholePayloadIsASlate)
{
    SymbolList list;
    EXPECT_FALSE(list.hasSlate());
    list.add(symbolAt(0, 0, nullptr));
    list.add(symbolAt(20, 0, "https://example.org/{}"));
    EXPECT_FALSE(list.hasSlate());
    list.add(symbolAt(40, 0, "{\"version\":2}"));
    EXPECT_FALSE(list.hasSlate());
    list.add(symbolAt(60, 0, slatePayloadToJson(test::minimalPayload()).constData()));
    EXPECT_TRUE(list.hasSlate());
}

} // namespace
} // namespace quillmark
