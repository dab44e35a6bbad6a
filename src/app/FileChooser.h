// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QUrl>
#include <QWindow>
#include <QtQml/qqmlregistration.h>

class QFileDialog;

namespace quillmark {

/// The platform's chooser for one folder or one picture, modal to a window: the desktop's
/// own where it has one, the widget library's in the program's colours elsewhere.
class FileChooser : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(Kind kind MEMBER m_kind NOTIFY changed)
    Q_PROPERTY(QString acceptLabel MEMBER m_acceptLabel NOTIFY changed)
    Q_PROPERTY(QUrl startFolder MEMBER m_startFolder NOTIFY changed)
    Q_PROPERTY(QWindow *parentWindow MEMBER m_parentWindow NOTIFY changed)

public:
    enum Kind { Folder, Picture };
    Q_ENUM(Kind)

    explicit FileChooser(QObject *parent = nullptr);
    ~FileChooser() override;

    /// Shows the chooser and returns at once. While it is shown, it is brought to the front.
    Q_INVOKABLE void open();

Q_SIGNALS:
    void changed();
    /// The user confirmed a location. Nothing is said when the user cancels.
    void chosen(const QUrl &location);

private:
    void takeChoice(int result);
    QFileDialog *makeDialog() const;

    Kind m_kind = Folder;
    QString m_acceptLabel;
    QUrl m_startFolder;
    QPointer<QWindow> m_parentWindow;
    QPointer<QFileDialog> m_dialog; ///< deletes itself when it closes
};

} // namespace quillmark
