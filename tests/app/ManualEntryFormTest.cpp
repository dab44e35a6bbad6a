// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/ManualEntryForm.h"
#include "manual/LastUsedPayloadStore.h"
#include "support/Printers.h"
#include "support/Samples.h"

#include <QTimeZone>

#include <gtest/gtest.h>

namespace quillmark {
namespace {

TEST(ManualEntryForm, showsTheDayThatAPayloadGets)
{
    ManualEntryForm form;
    form.setDate(QDateTime(QDate(2026, 4, 30), QTime(23, 30), QTimeZone("America/New_York")));
    EXPECT_EQ(form.dateText(), QStringLiteral("2026-05-01"));
}

TEST(ManualEntryForm, takesTheDayThatWasTyped)
{
    ManualEntryForm form;
    form.setCameraMake(QStringLiteral("Kestrel"));
    form.setCameraModel(QStringLiteral("K2"));
    form.setFilmBrand(QStringLiteral("Vela"));
    form.setFilmStock(QStringLiteral("Nova"));
    form.setIso(QStringLiteral("400"));
    form.setIncludeDate(true);
    ASSERT_TRUE(form.setDateText(QStringLiteral("2024-02-29")));
    EXPECT_EQ(form.toPayload({}).date, QStringLiteral("2024-02-29"));
    EXPECT_EQ(form.dateText(), QStringLiteral("2024-02-29"));
}

TEST(ManualEntryForm, keepsItsDateForWhatIsNoDay)
{
    ManualEntryForm form;
    ASSERT_TRUE(form.setDateText(QStringLiteral("2026-05-01")));
    for (const char *text : {"", "2026-05", "2026-02-30", "1.5.2026", "2026-05-01x"}) {
        EXPECT_FALSE(form.setDateText(QLatin1String(text))) << text;
        EXPECT_EQ(form.dateText(), QStringLiteral("2026-05-01"));
    }
}

TEST(ManualEntryForm, startsFromThePayloadTypedLast)
{
    LastUsedPayloadStore::save(test::fullPayload());
    ManualEntryForm form;
    form.prefillFromLastUsed();
    EXPECT_EQ(form.filmStock(), test::fullPayload().filmStock);
    EXPECT_EQ(form.location(), test::fullPayload().location);
    EXPECT_FALSE(form.includeDate());
}

} // namespace
} // namespace quillmark
