// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "manual/ManualEntryDraft.h"

#include <QString>
#include <QtQml/qqmlregistration.h>

namespace quillmark {

/// The manual entry draft as the form's fields see it.
class ManualEntryForm : public quillmark::ManualEntryDraft // qualified, for the QML type lookup
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString dateText READ dateText NOTIFY changed)

public:
    using ManualEntryDraft::ManualEntryDraft;

    /// The day that a payload would get: the UTC day of date(), as yyyy-MM-dd.
    QString dateText() const;

    /// Sets date() to the start of a day (UTC) given as yyyy-MM-dd, so that what was typed is
    /// what is written whatever the local time zone. False, and nothing set, for other text.
    Q_INVOKABLE bool setDateText(const QString &text);

    /// Fills the form from the payload that was typed last, if there is one.
    Q_INVOKABLE void prefillFromLastUsed();
};

} // namespace quillmark
