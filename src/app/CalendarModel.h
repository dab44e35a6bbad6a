// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/CalendarMonth.h"

#include <QAbstractListModel>
#include <QDate>
#include <QLocale>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace quillmark {

/// The days of a month for a calendar to show, in rows of a week, and one of them on which the
/// keyboard stands. Days are given and taken as yyyy-MM-dd. Main thread only.
class CalendarModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString localeName READ localeName WRITE setLocaleName NOTIFY changed)
    Q_PROPERTY(QString today READ today WRITE setToday NOTIFY changed)
    Q_PROPERTY(QString chosen READ chosen WRITE setChosen NOTIFY changed)
    Q_PROPERTY(QString current READ current NOTIFY changed)
    Q_PROPERTY(int currentPlace READ currentPlace NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QStringList weekdays READ weekdays NOTIFY changed)

public:
    enum Step {
        Month,
        Year,
    };
    Q_ENUM(Step)

    enum Role {
        DayRole = Qt::UserRole, ///< yyyy-MM-dd, empty past the bounds of the calendar
        NumberRole,             ///< the day of the month in the locale's digits
        NameRole,               ///< the whole date in the locale's long form
        InMonthRole,
        IsTodayRole,
        IsChosenRole,
    };

    explicit CalendarModel(QObject *parent = nullptr);

    /// Whose words and weeks are shown, like "nb_NO"; the user's at the start.
    QString localeName() const { return m_locale.name(); }
    void setLocaleName(const QString &name);
    /// The day that counts as today; that of the local time zone at the start.
    QString today() const;
    void setToday(const QString &day);
    /// Setting it also makes it current. What is no day chooses none, and today is current.
    QString chosen() const;
    void setChosen(const QString &day);

    /// The day on which the keyboard stands, whose month is shown, and its row in the model.
    QString current() const;
    int currentPlace() const;
    /// The month and year.
    QString title() const;
    /// Short names in the order of the columns.
    QStringList weekdays() const;

    /// Makes current the day that many months or years later, or earlier.
    Q_INVOKABLE void move(quillmark::CalendarModel::Step step, int count);
    /// Makes current the day to which a key leads: arrows a day or a week, Home and End the
    /// ends of the week, with Ctrl those of the month; the page keys a month, with Shift or
    /// Ctrl a year. False, and nothing changed, for a key that leads nowhere.
    Q_INVOKABLE bool moveByKey(int key, int modifiers);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void changed();

private:
    void setCurrent(QDate day);
    void tellChanged();
    Qt::DayOfWeek firstOfWeek() const { return m_locale.firstDayOfWeek(); }

    QLocale m_locale;
    QDate m_today;
    QDate m_chosen;
    QDate m_current;
};

} // namespace quillmark
