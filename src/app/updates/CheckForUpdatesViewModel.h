// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/updates/Updater.h"

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

namespace quillmark {

/// Follows whether an updater can check, for as long as it lives. The main thread.
class CheckForUpdatesViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(quillmark::Updater *updater READ updater WRITE setUpdater NOTIFY updaterChanged)
    Q_PROPERTY(bool canCheckForUpdates READ canCheckForUpdates NOTIFY canCheckForUpdatesChanged)

public:
    explicit CheckForUpdatesViewModel(QObject *parent = nullptr) : QObject(parent) {}
    /// Takes the updater's value at once.
    explicit CheckForUpdatesViewModel(Updater *updater, QObject *parent = nullptr);

    Updater *updater() const { return m_updater; }
    /// Follows another updater, or none, whose value is false.
    void setUpdater(Updater *updater);

    bool canCheckForUpdates() const { return m_canCheckForUpdates; }

Q_SIGNALS:
    void updaterChanged();
    void canCheckForUpdatesWillChange();
    void canCheckForUpdatesChanged();

private:
    void takeValue();

    QPointer<Updater> m_updater;
    bool m_canCheckForUpdates = false;
};

} // namespace quillmark
