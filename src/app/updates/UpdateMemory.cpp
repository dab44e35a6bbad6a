// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/UpdateMemory.h"

#include "base/Settings.h"

namespace quillmark::UpdateMemory {
namespace {

QString key(const char *name)
{
    return QStringLiteral("co.larkhollow.quillmark.updates.") + QString::fromLatin1(name);
}

QString read(const char *name)
{
    return QString::fromUtf8(Settings::value(key(name)).value_or(QByteArray()));
}

void write(const char *name, const QString &value)
{
    Settings::store(key(name), value.toUtf8());
}

std::optional<QDateTime> readTime(const char *name)
{
    const QDateTime time = QDateTime::fromString(read(name), Qt::ISODateWithMs);
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
    return read("skippedVersion");
}

void setSkippedVersion(const QString &version)
{
    write("skippedVersion", version);
}

std::optional<QDateTime> newestFeed(const QUrl &feed)
{
    const bool isSame = read("feed") == feed.toString();
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
