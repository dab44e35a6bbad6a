// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDate>
#include <Qt>

/// The arithmetic of a month shown as six weeks of days. Days are those of the proleptic
/// Gregorian calendar, from 0001-01-01 to 9999-12-31: those that four digits can name. Any
/// thread.
namespace quillmark::calendarmonth {

constexpr int daysInWeek = 7;
constexpr int shownDays = 6 * daysInWeek;

enum class Step {
    Day,
    Week,
    Month,
    Year,
};

[[nodiscard]] bool contains(QDate day);

/// The day that many steps later, or earlier for a negative count. In a shorter month it is
/// that month's last day; past the bounds it is the bound.
[[nodiscard]] QDate moved(QDate day, Step step, int count);

/// The first and the last day of the week, cut to the bounds.
[[nodiscard]] QDate weekStart(QDate day, Qt::DayOfWeek firstOfWeek);
[[nodiscard]] QDate weekEnd(QDate day, Qt::DayOfWeek firstOfWeek);

/// Which of the shown days a day of that month is, from 0: the first is in the first week.
[[nodiscard]] int placeOf(QDate day, Qt::DayOfWeek firstOfWeek);

/// The day shown at a place (0 to shownDays - 1) of a day's month; an invalid one past the
/// bounds.
[[nodiscard]] QDate dayAt(int place, QDate month, Qt::DayOfWeek firstOfWeek);

} // namespace quillmark::calendarmonth
