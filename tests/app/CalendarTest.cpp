// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/CalendarModel.h"
#include "support/Printers.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace quillmark {
namespace {

using calendarmonth::Step;

TEST(CalendarMonth, keepsTheDayOfTheMonthWhereThereIsOne)
{
    EXPECT_EQ(calendarmonth::moved({2026, 5, 15}, Step::Month, 1), QDate(2026, 6, 15));
    EXPECT_EQ(calendarmonth::moved({2026, 1, 31}, Step::Month, 1), QDate(2026, 2, 28));
    EXPECT_EQ(calendarmonth::moved({2024, 1, 31}, Step::Month, 1), QDate(2024, 2, 29));
    EXPECT_EQ(calendarmonth::moved({2024, 2, 29}, Step::Year, 1), QDate(2025, 2, 28));
    EXPECT_EQ(calendarmonth::moved({2024, 2, 29}, Step::Year, -4), QDate(2020, 2, 29));
    EXPECT_EQ(calendarmonth::moved({2025, 12, 31}, Step::Month, 2), QDate(2026, 2, 28));
}

TEST(CalendarMonth, knowsLeapDays)
{
    EXPECT_EQ(calendarmonth::moved({2024, 2, 28}, Step::Day, 1), QDate(2024, 2, 29));
    EXPECT_EQ(calendarmonth::moved({2023, 2, 28}, Step::Day, 1), QDate(2023, 3, 1));
    EXPECT_EQ(calendarmonth::moved({1900, 2, 28}, Step::Day, 1), QDate(1900, 3, 1));
    EXPECT_EQ(calendarmonth::moved({2000, 2, 28}, Step::Day, 1), QDate(2000, 2, 29));
}

TEST(CalendarMonth, endsAtFourDigitYears)
{
    const QDate first(1, 1, 1);
    const QDate last(9999, 12, 31);
    for (const Step step : {Step::Day, Step::Week, Step::Month, Step::Year}) {
        EXPECT_EQ(calendarmonth::moved(first, step, -1), first);
        EXPECT_EQ(calendarmonth::moved(last, step, 1), last);
    }
    EXPECT_EQ(calendarmonth::moved({1, 3, 5}, Step::Year, -1), first);
    EXPECT_EQ(calendarmonth::moved({9999, 12, 1}, Step::Month, 1), last);
    EXPECT_TRUE(calendarmonth::contains(first));
    EXPECT_TRUE(calendarmonth::contains(last));
    EXPECT_FALSE(calendarmonth::contains(first.addDays(-1)));
    EXPECT_FALSE(calendarmonth::contains(last.addDays(1)));
    EXPECT_FALSE(calendarmonth::contains({}));
}

TEST(CalendarMonth, findsTheEndsOfTheWeek)
{
    const QDate friday(2026, 5, 1);
    EXPECT_EQ(calendarmonth::weekStart(friday, Qt::Monday), QDate(2026, 4, 27));
    EXPECT_EQ(calendarmonth::weekEnd(friday, Qt::Monday), QDate(2026, 5, 3));
    EXPECT_EQ(calendarmonth::weekStart(friday, Qt::Sunday), QDate(2026, 4, 26));
    EXPECT_EQ(calendarmonth::weekEnd(friday, Qt::Sunday), QDate(2026, 5, 2));
    EXPECT_EQ(calendarmonth::weekStart(friday, Qt::Friday), friday);
    EXPECT_EQ(calendarmonth::weekEnd({9999, 12, 31}, Qt::Monday), QDate(9999, 12, 31));
}

TEST(CalendarMonth, showsEveryDayOfEveryMonthInItsColumn)
{
    for (const Qt::DayOfWeek first : {Qt::Monday, Qt::Saturday, Qt::Sunday}) {
        for (QDate day(2023, 12, 1); day < QDate(2025, 2, 1); day = day.addDays(1)) {
            const int place = calendarmonth::placeOf(day, first);
            ASSERT_LT(place, calendarmonth::shownDays);
            EXPECT_EQ(calendarmonth::dayAt(place, day, first), day);
            const int column = place % calendarmonth::daysInWeek;
            EXPECT_EQ((first - 1 + column) % 7 + 1, day.dayOfWeek());
        }
    }
}

TEST(CalendarMonth, showsNothingPastItsBounds)
{
    // 0001-01-01 is a Monday, 9999-12-31 a Friday.
    EXPECT_EQ(calendarmonth::placeOf({1, 1, 1}, Qt::Sunday), 1);
    EXPECT_FALSE(calendarmonth::dayAt(0, {1, 1, 1}, Qt::Sunday).isValid());
    EXPECT_EQ(calendarmonth::dayAt(1, {1, 1, 20}, Qt::Sunday), QDate(1, 1, 1));
    const int last = calendarmonth::placeOf({9999, 12, 31}, Qt::Monday);
    EXPECT_FALSE(calendarmonth::dayAt(last + 1, {9999, 12, 1}, Qt::Monday).isValid());
}

class CalendarModelTest : public ::testing::Test
{
protected:
    CalendarModelTest()
    {
        m_model.setLocaleName(QStringLiteral("en_GB"));
        m_model.setToday(QStringLiteral("2026-05-14"));
        m_model.setChosen(QStringLiteral("2026-05-01"));
    }
    QVariant at(int row, int role) const { return m_model.data(m_model.index(row), role); }
    /// The one row for which a role is true.
    int only(int role) const
    {
        int found = -1;
        for (int row = 0; row < m_model.rowCount(); ++row) {
            if (at(row, role).toBool()) {
                EXPECT_EQ(found, -1);
                found = row;
            }
        }
        return found;
    }
    QString after(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        EXPECT_TRUE(m_model.moveByKey(key, static_cast<int>(modifiers.toInt())));
        return m_model.current();
    }

    CalendarModel m_model;
    QAbstractItemModelTester m_check{&m_model,
                                     QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(CalendarModelTest, opensOnTheChosenDay)
{
    EXPECT_EQ(m_model.title(), QStringLiteral("May 2026"));
    EXPECT_EQ(m_model.current(), QStringLiteral("2026-05-01"));
    EXPECT_EQ(m_model.currentPlace(), 4);
    EXPECT_EQ(at(4, CalendarModel::NameRole), QStringLiteral("Friday, 1 May 2026"));
    EXPECT_EQ(at(4, CalendarModel::NumberRole), QStringLiteral("1"));
    EXPECT_EQ(only(CalendarModel::IsChosenRole), 4);
    EXPECT_EQ(at(only(CalendarModel::IsTodayRole), CalendarModel::DayRole),
              QStringLiteral("2026-05-14"));
}

TEST_F(CalendarModelTest, opensOnTodayWithoutAChosenDay)
{
    for (const char *none : {"", "2026-02-30", "today", "10000-01-01"}) {
        m_model.setChosen(QLatin1String(none));
        EXPECT_EQ(m_model.chosen(), QString());
        EXPECT_EQ(m_model.current(), QStringLiteral("2026-05-14"));
        EXPECT_EQ(only(CalendarModel::IsChosenRole), -1);
    }
}

TEST_F(CalendarModelTest, tellsDaysOfOtherMonthsApart)
{
    EXPECT_EQ(m_model.rowCount(), 42);
    EXPECT_EQ(at(0, CalendarModel::DayRole), QStringLiteral("2026-04-27"));
    EXPECT_EQ(at(3, CalendarModel::InMonthRole), false);
    EXPECT_EQ(at(4, CalendarModel::InMonthRole), true);
    EXPECT_EQ(at(34, CalendarModel::InMonthRole), true);
    EXPECT_EQ(at(35, CalendarModel::InMonthRole), false);
    EXPECT_EQ(at(41, CalendarModel::DayRole), QStringLiteral("2026-06-07"));
}

TEST_F(CalendarModelTest, startsTheWeekAsTheLocaleDoes)
{
    EXPECT_EQ(m_model.weekdays().first(), QStringLiteral("Mon"));
    EXPECT_EQ(m_model.weekdays().last(), QStringLiteral("Sun"));
    m_model.setLocaleName(QStringLiteral("en_US"));
    EXPECT_EQ(m_model.weekdays().first(), QStringLiteral("Sun"));
    EXPECT_EQ(m_model.weekdays().last(), QStringLiteral("Sat"));
    EXPECT_EQ(at(0, CalendarModel::DayRole), QStringLiteral("2026-04-26"));
    EXPECT_EQ(at(m_model.currentPlace(), CalendarModel::NameRole),
              QStringLiteral("Friday, May 1, 2026"));
    m_model.setLocaleName(QStringLiteral("de_DE"));
    EXPECT_EQ(m_model.title(), QStringLiteral("Mai 2026"));
    EXPECT_EQ(m_model.weekdays().first(), QStringLiteral("Mo"));
    EXPECT_EQ(at(m_model.currentPlace(), CalendarModel::NameRole),
              QStringLiteral("Freitag, 1. Mai 2026"));
}

TEST_F(CalendarModelTest, followsKeys)
{
    EXPECT_EQ(after(Qt::Key_Left), QStringLiteral("2026-04-30"));
    EXPECT_EQ(m_model.title(), QStringLiteral("April 2026"));
    EXPECT_EQ(after(Qt::Key_Right), QStringLiteral("2026-05-01"));
    EXPECT_EQ(after(Qt::Key_Down), QStringLiteral("2026-05-08"));
    EXPECT_EQ(after(Qt::Key_Up), QStringLiteral("2026-05-01"));
    EXPECT_EQ(after(Qt::Key_PageDown), QStringLiteral("2026-06-01"));
    EXPECT_EQ(after(Qt::Key_PageUp), QStringLiteral("2026-05-01"));
    EXPECT_EQ(after(Qt::Key_PageDown, Qt::ShiftModifier), QStringLiteral("2027-05-01"));
    EXPECT_EQ(after(Qt::Key_PageUp, Qt::ControlModifier), QStringLiteral("2026-05-01"));
    EXPECT_EQ(after(Qt::Key_Home), QStringLiteral("2026-04-27"));
    EXPECT_EQ(after(Qt::Key_End), QStringLiteral("2026-05-03"));
    EXPECT_EQ(after(Qt::Key_Home, Qt::ControlModifier), QStringLiteral("2026-05-01"));
    EXPECT_EQ(after(Qt::Key_End, Qt::ControlModifier), QStringLiteral("2026-05-31"));
    EXPECT_EQ(m_model.chosen(), QStringLiteral("2026-05-01"));
}

TEST_F(CalendarModelTest, leavesOtherKeysAlone)
{
    QSignalSpy changes(&m_model, &CalendarModel::changed);
    for (const int key : {Qt::Key_Escape, Qt::Key_Tab, Qt::Key_A, Qt::Key_Return}) {
        EXPECT_FALSE(m_model.moveByKey(key, Qt::NoModifier));
    }
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(CalendarModelTest, movesByMonthsAndYears)
{
    m_model.setChosen(QStringLiteral("2024-02-29"));
    m_model.move(CalendarModel::Year, 1);
    EXPECT_EQ(m_model.current(), QStringLiteral("2025-02-28"));
    m_model.move(CalendarModel::Month, -2);
    EXPECT_EQ(m_model.current(), QStringLiteral("2024-12-28"));
}

TEST_F(CalendarModelTest, namesNothingPastItsBounds)
{
    m_model.setLocaleName(QStringLiteral("en_US"));
    m_model.setChosen(QStringLiteral("0001-01-01"));
    EXPECT_EQ(m_model.currentPlace(), 1);
    EXPECT_EQ(at(0, CalendarModel::DayRole), QString());
    EXPECT_EQ(at(0, CalendarModel::NumberRole), QString());
    EXPECT_EQ(at(0, CalendarModel::NameRole), QString());
    EXPECT_EQ(after(Qt::Key_PageUp), QStringLiteral("0001-01-01"));
    EXPECT_EQ(m_model.title(), QStringLiteral("January 1"));
}

} // namespace
} // namespace quillmark
