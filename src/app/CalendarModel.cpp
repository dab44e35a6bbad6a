// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/CalendarModel.h"

namespace quillmark {
namespace {

using calendarmonth::Step;

QString isoText(QDate day)
{
    return day.toString(u"yyyy-MM-dd");
}

QDate fromIso(const QString &text)
{
    const QDate day = QDate::fromString(text, u"yyyy-MM-dd");
    return calendarmonth::contains(day) ? day : QDate();
}

QDate dayByKey(int key, Qt::KeyboardModifiers modifiers, QDate day, Qt::DayOfWeek firstOfWeek)
{
    const bool far = modifiers & (Qt::ShiftModifier | Qt::ControlModifier);
    const bool wide = modifiers & Qt::ControlModifier;
    switch (key) {
    case Qt::Key_Left:
        return calendarmonth::moved(day, Step::Day, -1);
    case Qt::Key_Right:
        return calendarmonth::moved(day, Step::Day, 1);
    case Qt::Key_Up:
        return calendarmonth::moved(day, Step::Week, -1);
    case Qt::Key_Down:
        return calendarmonth::moved(day, Step::Week, 1);
    case Qt::Key_PageUp:
        return calendarmonth::moved(day, far ? Step::Year : Step::Month, -1);
    case Qt::Key_PageDown:
        return calendarmonth::moved(day, far ? Step::Year : Step::Month, 1);
    case Qt::Key_Home:
        return wide ? QDate(day.year(), day.month(), 1)
                    : calendarmonth::weekStart(day, firstOfWeek);
    case Qt::Key_End:
        return wide ? QDate(day.year(), day.month(), day.daysInMonth())
                    : calendarmonth::weekEnd(day, firstOfWeek);
    default:
        return {};
    }
}

} // namespace

CalendarModel::CalendarModel(QObject *parent)
    : QAbstractListModel(parent), m_today(QDate::currentDate()), m_current(m_today)
{}

void CalendarModel::setLocaleName(const QString &name)
{
    const QLocale locale(name);
    if (m_locale != locale) {
        m_locale = locale;
        tellChanged();
    }
}

QString CalendarModel::today() const
{
    return isoText(m_today);
}

void CalendarModel::setToday(const QString &day)
{
    const QDate today = fromIso(day);
    if (today.isValid() && m_today != today) {
        m_today = today;
        tellChanged();
    }
}

QString CalendarModel::chosen() const
{
    return isoText(m_chosen);
}

void CalendarModel::setChosen(const QString &day)
{
    m_chosen = fromIso(day);
    m_current = m_chosen.isValid() ? m_chosen : m_today;
    tellChanged();
}

QString CalendarModel::current() const
{
    return isoText(m_current);
}

int CalendarModel::currentPlace() const
{
    return calendarmonth::placeOf(m_current, firstOfWeek());
}

QString CalendarModel::title() const
{
    return m_locale.standaloneMonthName(m_current.month()) + QLatin1Char(' ') +
           QString::number(m_current.year());
}

QStringList CalendarModel::weekdays() const
{
    QStringList names;
    for (int column = 0; column < calendarmonth::daysInWeek; ++column) {
        const int day = (firstOfWeek() - Qt::Monday + column) % calendarmonth::daysInWeek;
        names.append(m_locale.standaloneDayName(day + Qt::Monday, QLocale::ShortFormat));
    }
    return names;
}

void CalendarModel::move(CalendarModel::Step step, int count)
{
    setCurrent(calendarmonth::moved(
        m_current, step == Month ? calendarmonth::Step::Month : calendarmonth::Step::Year, count));
}

bool CalendarModel::moveByKey(int key, int modifiers)
{
    const QDate day =
        dayByKey(key, Qt::KeyboardModifiers::fromInt(modifiers), m_current, firstOfWeek());
    if (day.isValid()) {
        setCurrent(day);
    }
    return day.isValid();
}

int CalendarModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : calendarmonth::shownDays;
}

QVariant CalendarModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const QDate day = calendarmonth::dayAt(index.row(), m_current, firstOfWeek());
    switch (role) {
    case DayRole:
        return isoText(day);
    case NumberRole:
        return day.isValid() ? m_locale.toString(day.day()) : QString();
    case NameRole:
        return m_locale.toString(day, QLocale::LongFormat);
    case InMonthRole:
        return day.month() == m_current.month();
    case IsTodayRole:
        return day.isValid() && day == m_today;
    case IsChosenRole:
        return day.isValid() && day == m_chosen;
    default:
        return {};
    }
}

QHash<int, QByteArray> CalendarModel::roleNames() const
{
    return {{DayRole, "day"},         {NumberRole, "number"},   {NameRole, "name"},
            {InMonthRole, "inMonth"}, {IsTodayRole, "isToday"}, {IsChosenRole, "isChosen"}};
}

void CalendarModel::setCurrent(QDate day)
{
    if (m_current != day) {
        m_current = day;
        tellChanged();
    }
}

void CalendarModel::tellChanged()
{
    Q_EMIT dataChanged(index(0), index(calendarmonth::shownDays - 1));
    Q_EMIT changed();
}

} // namespace quillmark
