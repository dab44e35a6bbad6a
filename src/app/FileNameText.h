// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace quillmark {

/// The name of a file, for showing; empty while there is no file.
class FileNameText : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QUrl file MEMBER m_file NOTIFY changed REQUIRED)
    Q_PROPERTY(QString text READ text NOTIFY changed)

public:
    using QObject::QObject;

    QString text() const;

Q_SIGNALS:
    void changed();

private:
    QUrl m_file;
};

} // namespace quillmark
