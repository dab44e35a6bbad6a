// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "payload/SlatePayload.h"
#include "support/Printers.h"
#include "support/Samples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace quillmark {
namespace {

using test::fullPayload;
using test::minimalPayload;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

InspectorRow row(QStringView label, QStringView value)
{
    return {label.toString(), value.toString()};
}

std::vector<QString> labels(const SlatePayload &payload)
{
    std::vector<QString> result;
    for (const InspectorRow &line : payload.inspectorRows()) {
        result.push_back(line.label);
    }
    return result;
}

struct NameCase {
    const char *title;
    const char16_t *maker;
    const char16_t *model;
    const char16_t *joined;
};

class FullName : public ::testing::TestWithParam<NameCase>
{};

TEST_P(FullName, joinsMakerAndModel)
{
    SlatePayload payload;
    payload.cameraMake = payload.filmBrand = QString::fromUtf16(GetParam().maker);
    payload.cameraModel = payload.filmStock = QString::fromUtf16(GetParam().model);
    EXPECT_EQ(payload.fullCameraName(), QString::fromUtf16(GetParam().joined));
    EXPECT_EQ(payload.fullFilmName(), QString::fromUtf16(GetParam().joined));
}

INSTANTIATE_TEST_SUITE_P(
    SlatePayload, FullName,
    ::testing::Values(
        NameCase{"plain", u"Kestrel", u"K2", u"Kestrel K2"},
        NameCase{"modelNamesItsMaker", u"Kestrel", u"Kestrel K2", u"Kestrel K2"},
        NameCase{"letterCaseOfTheModelStays", u"KESTREL", u"kestrel k2", u"kestrel k2"},
        NameCase{"emptyMaker", u"", u"K2", u"K2"},
        NameCase{"blankMaker", u" \t\u00A0\u3000", u" K2 ", u"K2"},
        NameCase{"emptyModel", u"  Kestrel ", u"", u"Kestrel"},
        NameCase{"bothEmpty", u" ", u"\t", u""},
        NameCase{"modelIsTheMaker", u"Kestrel", u"Kestrel", u"Kestrel Kestrel"},
        NameCase{"modelOnlyBeginsWithTheLetters", u"Kestrel", u"KestrelK2", u"Kestrel KestrelK2"},
        NameCase{"fullUnicodeLowerCasing", u"ÅNGSTRÖM", u"ångström Ö1", u"ångström Ö1"},
        NameCase{"lineBreaksAreKept", u"\nKestrel", u"K2\n", u"\nKestrel K2\n"}),
    [](const auto &test) { return std::string(test.param.title); });

TEST(SlatePayload, requiredFieldsAloneGiveFourRows)
{
    EXPECT_THAT(minimalPayload().inspectorRows(),
                ElementsAre(row(u"CAMERA", u"Kestrel K2"), row(u"FILM", u"Vela Nova 400"),
                            row(u"ISO", u"400"), row(u"SESSION", u"a1b2")));
}

TEST(SlatePayload, rowsComeInTheirFixedOrder)
{
    EXPECT_THAT(fullPayload().inspectorRows(),
                ElementsAre(row(u"CAMERA", u"Kestrel K2"), row(u"FILM", u"Vela Nova 400"),
                            row(u"ISO", u"400"), row(u"LENS", u"Optar 50mm f/2"),
                            row(u"FOCAL", u"50mm"), row(u"PUSH/PULL", u"-1 stops"),
                            row(u"LOCATION", u"Grünerløkka, Oslo"),
                            row(u"PROJECT", u"Nordlys / 夜明け"), row(u"DATE", u"2026-05-01"),
                            row(u"ROLL", u"Roll 12"),
                            row(u"NOTES", u"Fog at dawn; \"first light\" = 5:40 🌫"),
                            row(u"ARTIST", u"Zoë Ångström"), row(u"\u00A9", u"© 2026 Zoë Ångström"),
                            row(u"SESSION", u"7c9e6679-7425-40de-944b-e07fc1f90ae7")));
}

TEST(SlatePayload, lensRowDependsOnWhatIsKnown)
{
    SlatePayload payload = minimalPayload();
    payload.lensMake = QStringLiteral("Optar");
    EXPECT_THAT(payload.inspectorRows(), Contains(row(u"LENS MAKE", u"Optar")));
    EXPECT_THAT(labels(payload), Not(Contains(QStringLiteral("LENS"))));

    payload.lensModel = QStringLiteral("50mm f/2");
    EXPECT_THAT(payload.inspectorRows(), Contains(row(u"LENS", u"Optar 50mm f/2")));
    EXPECT_THAT(labels(payload), Not(Contains(QStringLiteral("LENS MAKE"))));

    payload.lensMake.reset();
    EXPECT_THAT(payload.inspectorRows(), Contains(row(u"LENS", u"50mm f/2")));
}

TEST(SlatePayload, lensValueIsNeitherTrimmedNorDeduplicated)
{
    SlatePayload payload = minimalPayload();
    payload.lensMake = QStringLiteral("Optar ");
    payload.lensModel = QStringLiteral("Optar 50");
    EXPECT_THAT(payload.inspectorRows(), Contains(row(u"LENS", u"Optar  Optar 50")));
}

TEST(SlatePayload, pushPullSaysStopsForEveryCountAndNothingForZero)
{
    SlatePayload payload = minimalPayload();
    payload.pushPull = 0;
    EXPECT_THAT(labels(payload), Not(Contains(QStringLiteral("PUSH/PULL"))));
    payload.pushPull = 1;
    EXPECT_THAT(payload.inspectorRows(), Contains(row(u"PUSH/PULL", u"+1 stops")));
    payload.pushPull = 2;
    EXPECT_THAT(payload.inspectorRows(), Contains(row(u"PUSH/PULL", u"+2 stops")));
    payload.pushPull = -2;
    EXPECT_THAT(payload.inspectorRows(), Contains(row(u"PUSH/PULL", u"-2 stops")));
}

TEST(SlatePayload, emptyOptionalTextHasItsRow)
{
    SlatePayload payload = minimalPayload();
    payload.location = QString();
    EXPECT_THAT(payload.inspectorRows(), Contains(row(u"LOCATION", u"")));
}

TEST(SlatePayload, numbersArePlainDecimal)
{
    SlatePayload payload = minimalPayload();
    payload.iso = -1234567;
    payload.focalLength = 0;
    EXPECT_THAT(payload.inspectorRows(), Contains(row(u"ISO", u"-1234567")));
    EXPECT_THAT(payload.inspectorRows(), Contains(row(u"FOCAL", u"0mm")));
}

TEST(SlatePayload, absentDiffersFromEmptyAndZero)
{
    SlatePayload payload = minimalPayload();
    payload.notes = QString();
    EXPECT_NE(payload, minimalPayload());
    payload = minimalPayload();
    payload.pushPull = 0;
    EXPECT_NE(payload, minimalPayload());
    payload.pushPull.reset();
    EXPECT_EQ(payload, minimalPayload());
}

} // namespace
} // namespace quillmark
