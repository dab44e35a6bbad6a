// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/ChooserRequest.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QUrl>
#include <QWindow>
#include <QtQml/qqmlregistration.h>

#include <memory>

class QFileDialog;

namespace quillmark {

class PortalChooser;

/// The platform's chooser for one folder or one picture, modal to a window: the desktop's
/// own where it has one (its portal, or what Qt's platform theme brings), the widget library's
/// in the program's colours elsewhere, or where the desktop's fails to open.
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
    /// Takes the chooser away, as if the user had cancelled.
    Q_INVOKABLE void close();

Q_SIGNALS:
    void changed();
    /// The user confirmed a location. Nothing is said when the user cancels.
    void chosen(const QUrl &location);

private:
    ChooserRequest request() const;
    void openPortal();
    void openDialog();
    void endPortal();
    void quit();
    void takeChoice(int result);

    Kind m_kind = Folder;
    QString m_acceptLabel;
    QUrl m_startFolder;
    QPointer<QWindow> m_parentWindow;
    std::unique_ptr<PortalChooser> m_portal; ///< while it is open
    QPointer<QFileDialog> m_dialog;          ///< deletes itself when it closes
};

} // namespace quillmark
