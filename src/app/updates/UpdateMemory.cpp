// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/UpdateMemory.h"

#include <QSettings>

namespace quillmark::UpdateMemory {
namespace {

/// The program's own settings, whatever executable the library is linked into.
QSettings settings()
{
    return {QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Larkhollow"),
            QStringLiteral("Quillmark")};
}

QString key(const char *name)
{
    return QStringLiteral("co.larkhollow.quillmark.updates.") + QString::fromLatin1(name);
}

void write(const char *name, const QString &value)
{
    QSettings store = settings();
    store.setValue(key(name), value);
    store.sync();
}

std::optional<QDateTime> readTime(const char *name)
{
    const QDateTime time =
        QDateTime::fromString(settings().value(key(name)).toString(), Qt::ISODateWithMs);
    return time.isValid() ? std::optional(time.toUTC()) : std::nullopt;
}

QString timeText(const QDateTime &time)
{
    return time.toUTC().toString(Qt::ISODateWithMs);
}

} // namespace

std::optional<QDateTime> lastCheck()
{
    return readTime("lastCheck");
}

void setLastCheck(const QDateTime &time)
{
    write("lastCheck", timeText(time));
}

QString skippedVersion()
{
    return settings().value(key("skippedVersion")).toString();
}

void setSkippedVersion(const QString &version)
{
    write("skippedVersion", version);
}

std::optional<QDateTime> newestFeed(const QUrl &feed)
{
    const bool isSame = settings().value(key("feed")).toString() == feed.toString();
    return isSame ? readTime("newestFeed") : std::nullopt;
}

void noteFeed(const QUrl &feed, const QDateTime &date)
{
    const auto newest = newestFeed(feed);
    if (newest && date <= *newest) {
        return;
    }
    write("feed", feed.toString());
    write("newestFeed", timeText(date));
}

} // namespace quillmark::UpdateMemory
