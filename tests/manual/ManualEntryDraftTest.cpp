// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "manual/ManualEntryDraft.h"
#include "support/Printers.h"
#include "support/Samples.h"

#include <gtest/gtest.h>

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTimeZone>

namespace quillmark {
namespace {

const QString version = QStringLiteral("slate@1");

void fillRequired(ManualEntryDraft &draft)
{
    draft.setCameraMake(QStringLiteral("  x  "));
    draft.setCameraModel(QStringLiteral("\tx\n"));
    draft.setFilmBrand(QStringLiteral("\u2028x\u3000"));
    draft.setFilmStock(QStringLiteral("x"));
    draft.setIso(QStringLiteral(" 400 "));
}

TEST(ManualEntryDraft, startsEmptyAndInvalid)
{
    const QDateTime before = QDateTime::currentDateTime();
    const ManualEntryDraft draft;
    EXPECT_FALSE(draft.isValid());
    EXPECT_EQ(draft.cameraMake(), QString());
    EXPECT_FALSE(draft.includeDate());
    EXPECT_GE(draft.date(), before);
    EXPECT_LE(draft.date(), QDateTime::currentDateTime());
}

TEST(ManualEntryDraft, textsStayAsTheyWereTyped)
{
    ManualEntryDraft draft;
    const QStringList names{
        QStringLiteral("cameraMake"), QStringLiteral("cameraModel"), QStringLiteral("filmBrand"),
        QStringLiteral("filmStock"),  QStringLiteral("iso"),         QStringLiteral("lensMake"),
        QStringLiteral("lensModel"),  QStringLiteral("focalLength"), QStringLiteral("pushPull"),
        QStringLiteral("location"),   QStringLiteral("project"),     QStringLiteral("notes"),
        QStringLiteral("rollName"),   QStringLiteral("artist"),      QStringLiteral("copyright")};
    for (const QString &name : names) {
        ASSERT_TRUE(draft.setProperty(name.toUtf8(), u' ' + name));
    }
    for (const QString &name : names) {
        EXPECT_EQ(draft.property(name.toUtf8()), u' ' + name);
    }
}

TEST(ManualEntryDraft, requiredFieldsAreTrimmedAndParsed)
{
    ManualEntryDraft draft;
    fillRequired(draft);
    ASSERT_TRUE(draft.isValid());
    const SlatePayload payload = draft.toPayload(version);
    EXPECT_EQ(payload.cameraMake, QStringLiteral("x"));
    EXPECT_EQ(payload.cameraModel, QStringLiteral("x"));
    EXPECT_EQ(payload.filmBrand, QStringLiteral("x"));
    EXPECT_EQ(payload.filmStock, QStringLiteral("x"));
    EXPECT_EQ(payload.iso, 400);
    EXPECT_EQ(payload.version, 2);
    EXPECT_EQ(payload.appVersion, version);
    EXPECT_FALSE(payload.date.has_value());
    EXPECT_FALSE(payload.lensMake.has_value());
}

TEST(ManualEntryDraft, eachRequiredFieldIsRequired)
{
    for (const char *name : {"cameraMake", "cameraModel", "filmBrand", "filmStock", "iso"}) {
        ManualEntryDraft draft;
        fillRequired(draft);
        ASSERT_TRUE(draft.setProperty(name, QStringLiteral(" \n")));
        EXPECT_FALSE(draft.isValid()) << name;
        try {
            draft.toPayload(version);
            ADD_FAILURE() << name;
        } catch (const ManualEntryError &error) {
            EXPECT_EQ(error.which(), ManualEntryError::Case::missingRequiredFields);
            EXPECT_EQ(error.description(),
                      QStringLiteral("Camera make, camera model, film brand, film stock, and ISO "
                                     "are required."));
        }
    }
}

struct IsoCase {
    const char16_t *text = nullptr;
    std::optional<qint64> value;
};

TEST(ManualEntryDraft, isoIsADecimalIntegerOf64Bits)
{
    const IsoCase cases[] = {
        {u"400", 400},
        {u"+400", 400},
        {u"-1", -1},
        {u"0", 0},
        {u"-100", -100},
        {u"00400", 400},
        {u"9223372036854775807", 9223372036854775807},
        {u"-9223372036854775808", std::numeric_limits<qint64>::min()},
        {u"", {}},
        {u"400 ASA", {}},
        {u"4 00", {}},
        {u"400.0", {}},
        {u"4e2", {}},
        {u"+", {}},
        {u"-", {}},
        {u"+-4", {}},
        {u"- 4", {}},
        {u"0x10", {}},
        {u"٤٠٠", {}},
        {u"4,000", {}},
        {u"9223372036854775808", {}},
    };
    for (const IsoCase &test : cases) {
        ManualEntryDraft draft;
        fillRequired(draft);
        draft.setIso(QString::fromUtf16(test.text));
        EXPECT_EQ(draft.isValid(), test.value.has_value()) << draft.iso().toStdString();
        if (draft.isValid()) {
            EXPECT_EQ(draft.toPayload(version).iso, *test.value);
        }
    }
}

TEST(ManualEntryDraft, optionalNumbersAreDroppedWhenTheyDoNotParse)
{
    ManualEntryDraft draft;
    fillRequired(draft);
    draft.setFocalLength(QStringLiteral("50mm"));
    draft.setPushPull(QStringLiteral("0"));
    EXPECT_FALSE(draft.toPayload(version).focalLength.has_value());
    EXPECT_EQ(draft.toPayload(version).pushPull, 0);
    draft.setFocalLength(QStringLiteral(" 50 "));
    draft.setPushPull(QString());
    EXPECT_EQ(draft.toPayload(version).focalLength, 50);
    EXPECT_FALSE(draft.toPayload(version).pushPull.has_value());
    draft.setPushPull(QStringLiteral("+2"));
    EXPECT_EQ(draft.toPayload(version).pushPull, 2);
    draft.setPushPull(QStringLiteral("-1"));
    EXPECT_EQ(draft.toPayload(version).pushPull, -1);
}

TEST(ManualEntryDraft, blankOptionalTextIsAbsent)
{
    ManualEntryDraft draft;
    fillRequired(draft);
    draft.setNotes(QStringLiteral(" \r\n\u2029\u0085"));
    draft.setLocation(QStringLiteral(" Oslo \n"));
    EXPECT_FALSE(draft.toPayload(version).notes.has_value());
    EXPECT_EQ(draft.toPayload(version).location, QStringLiteral("Oslo"));
}

TEST(ManualEntryDraft, sessionIdIsNewOnEveryCall)
{
    ManualEntryDraft draft;
    fillRequired(draft);
    const QString first = draft.toPayload(version).sessionId;
    const QString second = draft.toPayload(version).sessionId;
    EXPECT_NE(first, second);
    const QRegularExpression form(QStringLiteral(
        "^manual-[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}$"));
    EXPECT_TRUE(form.match(first).hasMatch()) << first.toStdString();
    EXPECT_EQ(first.size(), 43);
}

TEST(ManualEntryDraft, dateIsTheUtcDayAndOnlyWithTheSwitch)
{
    ManualEntryDraft draft;
    fillRequired(draft);
    draft.setDate(QDateTime(QDate(2026, 5, 1), QTime(23, 30), QTimeZone(-3 * 3600)));
    EXPECT_FALSE(draft.toPayload(version).date.has_value());
    draft.setIncludeDate(true);
    EXPECT_EQ(draft.toPayload(version).date, QStringLiteral("2026-05-02"));
    draft.setDate(QDateTime(QDate(2026, 5, 1), QTime(0, 30), QTimeZone(3 * 3600)));
    EXPECT_EQ(draft.toPayload(version).date, QStringLiteral("2026-04-30"));
}

TEST(ManualEntryDraft, anInvalidMomentChangesNothing)
{
    ManualEntryDraft draft;
    const QDateTime before = draft.date();
    draft.setDate(QDateTime());
    EXPECT_EQ(draft.date(), before);
}

TEST(ManualEntryDraft, prefillTakesEverythingButIdentityAndDate)
{
    ManualEntryDraft draft;
    draft.setIncludeDate(true);
    draft.setDate(QDateTime(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC));
    const QDateTime before = QDateTime::currentDateTime();
    const SlatePayload source = test::fullPayload();
    draft.prefill(source);
    EXPECT_EQ(draft.pushPull(), QStringLiteral("-1"));
    EXPECT_EQ(draft.focalLength(), QStringLiteral("50"));
    EXPECT_FALSE(draft.includeDate());
    EXPECT_GE(draft.date(), before);

    SlatePayload expected = source;
    const SlatePayload typed = draft.toPayload(version);
    expected.sessionId = typed.sessionId;
    expected.appVersion = version;
    expected.date.reset();
    EXPECT_EQ(typed, expected);
    EXPECT_NE(typed.sessionId, source.sessionId);
}

TEST(ManualEntryDraft, prefillEmptiesWhatThePayloadLacks)
{
    ManualEntryDraft draft;
    draft.setNotes(QStringLiteral("old"));
    draft.setFocalLength(QStringLiteral("35"));
    SlatePayload payload = test::minimalPayload();
    payload.pushPull = 2;
    draft.prefill(payload);
    EXPECT_EQ(draft.notes(), QString());
    EXPECT_EQ(draft.focalLength(), QString());
    EXPECT_EQ(draft.pushPull(), QStringLiteral("2"));
}

TEST(ManualEntryDraft, changesAnnounceThemselvesBeforeAndAfter)
{
    ManualEntryDraft draft;
    QStringList seen;
    QObject::connect(&draft, &ManualEntryDraft::willChange, &draft,
                     [&] { seen.append(QStringLiteral("before:") + draft.iso()); });
    QObject::connect(&draft, &ManualEntryDraft::changed, &draft,
                     [&] { seen.append(QStringLiteral("after:") + draft.iso()); });
    draft.setIso(QStringLiteral("400"));
    draft.setIso(QStringLiteral("400"));
    EXPECT_EQ(seen, QStringList({QStringLiteral("before:"), QStringLiteral("after:400")}));
}

} // namespace
} // namespace quillmark
