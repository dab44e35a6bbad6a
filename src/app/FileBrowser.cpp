// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/FileBrowser.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QStringList>

#include <chrono>

namespace quillmark {
namespace {

/// A file manager that has to be started first takes its time; one that hangs is given up.
constexpr std::chrono::milliseconds answerTime{10'000};

QDBusMessage showFolders(const QUrl &folder)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowFolders"));
    const QString location = QString::fromLatin1(folder.toEncoded(QUrl::FullyEncoded));
    const QString noStartupId;
    call << QStringList{location} << noStartupId;
    return call;
}

} // namespace

void showInFileBrowser(const QUrl &folder)
{
    if (folder.isEmpty()) {
        return;
    }
    const QDBusConnection bus = QDBusConnection::sessionBus();
    // Owned by the application, since the answer may come after the screen that asked is gone.
    auto *watcher = new QDBusPendingCallWatcher(
        bus.asyncCall(showFolders(folder), static_cast<int>(answerTime.count())),
        QCoreApplication::instance());
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, folder] {
        watcher->deleteLater();
        if (watcher->isError()) {
            QDesktopServices::openUrl(folder);
        }
    });
}

} // namespace quillmark
