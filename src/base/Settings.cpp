// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "base/Settings.h"

#include <QCoreApplication>
#include <QFile>
#include <QLockFile>
#include <QSettings>

#include <chrono>

namespace quillmark::Settings {
namespace {

constexpr std::chrono::milliseconds patience{2000};

QSettings ownSettings()
{
    return {QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Larkhollow"),
            QStringLiteral("Quillmark")};
}

/// Removes a lock that this very process has left behind, because it could not remove it when
/// it should have: outside of QSettings::sync() it holds none. False where it still cannot.
bool removeOwnLock(const QString &file)
{
    qint64 holder = 0;
    QString host;
    QString program;
    const bool isOwn = QLockFile(file).getLockInfo(&holder, &host, &program) &&
                       holder == QCoreApplication::applicationPid();
    return !isOwn || QFile::remove(file);
}

/// QSettings waits for its lock without an end, on the thread of the window: for a lock of
/// its own process too, and for that of a program that is stuck. So it is asked only where it
/// does not have to wait. (A lock whose holder is gone, QLockFile removes.)
bool isFree(const QString &file)
{
    if (!removeOwnLock(file)) {
        return false;
    }
    QLockFile lock(file);
    lock.setStaleLockTime(std::chrono::milliseconds::zero());
    // Where a lock cannot be made at all, QSettings makes the folder for it or does not wait.
    const bool free = lock.tryLock(patience) || lock.error() != QLockFile::LockFailedError;
    lock.unlock();
    return removeOwnLock(file) && free;
}

} // namespace

QVariant value(const QString &key)
{
    return ownSettings().value(key);
}

void store(const QString &key, const QVariant &value)
{
    QSettings settings = ownSettings();
    const QString lock = settings.fileName() + QStringLiteral(".lock");
    if (isFree(lock)) {
        settings.setValue(key, value);
        // At once, not when the event loop finds time: the run that follows may be killed.
        settings.sync();
        removeOwnLock(lock);
    }
}

} // namespace quillmark::Settings
