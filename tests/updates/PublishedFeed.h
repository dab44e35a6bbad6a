// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/updates/Appcast.h"
#include "app/updates/UpdateConfiguration.h"
#include "appcast/SecretKey.h"
#include "updates/TestServer.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

namespace quillmark::test {

/// A feed that a publisher puts on a server, with its packages.
class PublishedFeed
{
public:
    explicit PublishedFeed(TestServer &server);

    /// What the program is configured with to read it.
    UpdateConfiguration configuration() const;

    /// An item for a version, whose package is put on the server and signed.
    AppcastItem item(const QString &version, const QByteArray &package = "a package");
    /// Adds a version to the feed and publishes it. Each feed is an hour younger than the one
    /// before it.
    void add(const AppcastItem &item);
    void add(const QString &version) { add(item(version)); }
    /// Publishes these bytes as the feed, signed.
    void publish(const QByteArray &feed);
    /// Publishes these bytes beside the feed.
    void publishSignature(const QByteArray &signature);

    QByteArray signatureOf(const QByteArray &bytes) const;
    const QByteArray &bytes() const { return m_bytes; }
    QDateTime date() const { return m_date; }

    static QString path() { return QStringLiteral("/appcast.xml"); }
    static QString packagePath(const QString &version);

private:
    TestServer &m_server;
    tools::SecretKey m_key = tools::SecretKey::make();
    QByteArray m_bytes;
    QDateTime m_date{QDate(2026, 1, 1), QTime(12, 0), Qt::UTC};
};

} // namespace quillmark::test
