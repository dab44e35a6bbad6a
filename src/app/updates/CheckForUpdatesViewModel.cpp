// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/CheckForUpdatesViewModel.h"

namespace quillmark {

CheckForUpdatesViewModel::CheckForUpdatesViewModel(Updater *updater, QObject *parent)
    : QObject(parent)
{
    setUpdater(updater);
}

void CheckForUpdatesViewModel::setUpdater(Updater *updater)
{
    if (m_updater == updater) {
        return;
    }
    if (m_updater) {
        disconnect(m_updater, nullptr, this, nullptr);
    }
    m_updater = updater;
    if (m_updater) {
        connect(m_updater, &Updater::canCheckForUpdatesChanged, this,
                &CheckForUpdatesViewModel::takeValue);
    }
    takeValue();
    Q_EMIT updaterChanged();
}

void CheckForUpdatesViewModel::takeValue()
{
    const bool value = m_updater && m_updater->canCheckForUpdates();
    if (value == m_canCheckForUpdates) {
        return;
    }
    Q_EMIT canCheckForUpdatesWillChange();
    m_canCheckForUpdates = value;
    Q_EMIT canCheckForUpdatesChanged();
}

} // namespace quillmark
