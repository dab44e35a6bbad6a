// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "updates/PublishedFeed.h"

#include "appcast/FeedWriter.h"

namespace quillmark::test {

PublishedFeed::PublishedFeed(TestServer &server) : m_server(server), m_bytes(tools::emptyFeed()) {}

UpdateConfiguration PublishedFeed::configuration() const
{
    UpdateConfiguration configuration;
    configuration.feed = m_server.address(path());
    configuration.publicKey = m_key.publicKey();
    configuration.automatic = false;
    return configuration;
}

QString PublishedFeed::packagePath(const QString &version)
{
    return QStringLiteral("/quillmark_") + version + QStringLiteral(".deb");
}

AppcastItem PublishedFeed::item(const QString &version, const QByteArray &package)
{
    m_server.answer(packagePath(version), package);
    AppcastItem item;
    item.version = version;
    item.shortVersion = version;
    item.os = QStringLiteral("linux");
    item.package = m_server.address(packagePath(version));
    item.packageBytes = package.size();
    item.packageSignature = QString::fromLatin1(signatureOf(package));
    item.notes = QStringLiteral("What is new in ") + version;
    item.notesFormat = AppcastItem::NotesFormat::PlainText;
    return item;
}

void PublishedFeed::add(const AppcastItem &item)
{
    m_date = m_date.addSecs(3600);
    publish(tools::feedWith(m_bytes, item, m_date));
}

void PublishedFeed::publish(const QByteArray &feed)
{
    m_bytes = feed;
    m_server.answer(path(), feed);
    publishSignature(signatureOf(feed));
}

void PublishedFeed::publishSignature(const QByteArray &signature)
{
    m_server.answer(path() + QStringLiteral(".sig"), signature);
}

QByteArray PublishedFeed::signatureOf(const QByteArray &bytes) const
{
    return tools::toBase64(m_key.sign(tools::bytesOf(bytes)));
}

} // namespace quillmark::test
