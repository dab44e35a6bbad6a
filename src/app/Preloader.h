// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QPointer>
#include <QQmlComponent>
#include <QQuickWindow>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <vector>

namespace quillmark {

/// Loads QML files in the background as soon as a window has shown its first frame, so that neither
/// the start waits for them nor whoever needs them first. The theme's fonts that the first screen
/// does not have are looked for meanwhile.
///
/// A file that cannot be loaded is left to whoever needs it, and to the error that this gives.
class Preloader : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickWindow *window READ window WRITE setWindow NOTIFY windowChanged)
    /// Relative to the file in which the preloader stands.
    Q_PROPERTY(QStringList files MEMBER m_files NOTIFY filesChanged)
    /// Whether all files are loaded.
    Q_PROPERTY(bool ready READ isReady NOTIFY readyChanged)

public:
    using QObject::QObject;

    QQuickWindow *window() const { return m_window; }
    /// To be set once.
    void setWindow(QQuickWindow *window);
    bool isReady() const { return m_ready; }

Q_SIGNALS:
    void windowChanged();
    void filesChanged();
    void readyChanged();

private:
    void load();
    void check();

    QPointer<QQuickWindow> m_window;
    QStringList m_files;
    // What is loaded stays so for as long as a component holds it.
    std::vector<std::unique_ptr<QQmlComponent>> m_components;
    bool m_ready = false;
};

} // namespace quillmark
