// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/ManualEntryForm.h"

#include "manual/LastUsedPayloadStore.h"

#include <QDate>
#include <QDateTime>
#include <QTime>

namespace quillmark {
namespace {

constexpr QStringView isoDay = u"yyyy-MM-dd";

}

QString ManualEntryForm::dateText() const
{
    return date().toUTC().toString(isoDay);
}

bool ManualEntryForm::setDateText(const QString &text)
{
    const QDate day = QDate::fromString(text, isoDay);
    if (!day.isValid()) {
        return false;
    }
    setDate(QDateTime(day, QTime(0, 0), Qt::UTC));
    return true;
}

void ManualEntryForm::prefillFromLastUsed()
{
    if (const auto payload = LastUsedPayloadStore::load()) {
        prefill(*payload);
    }
}

} // namespace quillmark
