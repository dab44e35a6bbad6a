// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace quillmark {

/// How one backup mode is presented. An unknown mode has empty texts.
class BackupModeText : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString rawValue MEMBER m_rawValue NOTIFY changed REQUIRED)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString description READ description NOTIFY changed)

public:
    using QObject::QObject;

    QString title() const;
    QString description() const;

Q_SIGNALS:
    void changed();

private:
    QString m_rawValue;
};

} // namespace quillmark
