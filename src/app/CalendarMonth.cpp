// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/CalendarMonth.h"

#include <algorithm>

namespace quillmark::calendarmonth {
namespace {

const QDate firstDay(1, 1, 1);
const QDate lastDay(9999, 12, 31);

int daysSinceWeekStart(QDate day, Qt::DayOfWeek firstOfWeek)
{
    return (day.dayOfWeek() - firstOfWeek + daysInWeek) % daysInWeek;
}

} // namespace

bool contains(QDate day)
{
    return day.isValid() && day >= firstDay && day <= lastDay;
}

QDate moved(QDate day, Step step, int count)
{
    QDate to;
    switch (step) {
    case Step::Day:
        to = day.addDays(count);
        break;
    case Step::Week:
        to = day.addDays(qint64{count} * daysInWeek);
        break;
    case Step::Month:
        to = day.addMonths(count);
        break;
    case Step::Year:
        to = day.addYears(count);
        break;
    }
    if (!to.isValid()) {
        return count < 0 ? firstDay : lastDay;
    }
    return std::clamp(to, firstDay, lastDay);
}

QDate weekStart(QDate day, Qt::DayOfWeek firstOfWeek)
{
    return moved(day, Step::Day, -daysSinceWeekStart(day, firstOfWeek));
}

QDate weekEnd(QDate day, Qt::DayOfWeek firstOfWeek)
{
    return moved(day, Step::Day, daysInWeek - 1 - daysSinceWeekStart(day, firstOfWeek));
}

int placeOf(QDate day, Qt::DayOfWeek firstOfWeek)
{
    const QDate first(day.year(), day.month(), 1);
    return daysSinceWeekStart(first, firstOfWeek) + day.day() - 1;
}

QDate dayAt(int place, QDate month, Qt::DayOfWeek firstOfWeek)
{
    const QDate day = month.addDays(place - placeOf(month, firstOfWeek));
    return contains(day) ? day : QDate();
}

} // namespace quillmark::calendarmonth
