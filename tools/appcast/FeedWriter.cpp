// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "appcast/FeedWriter.h"

#include "app/updates/AppcastNames.h"

#include <QLocale>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <stdexcept>
#include <utility>

namespace quillmark::tools {
namespace {

using namespace AppcastNames;

const auto itemName = QLatin1StringView("item");
const auto channelName = QLatin1StringView("channel");
const auto builtName = QLatin1StringView("lastBuildDate");

/// Copies a feed from one end to the other, and puts the new item in on the way.
class FeedCopy
{
public:
    FeedCopy(const QByteArray &feed, const AppcastItem &item, QDateTime made)
        : m_in(feed), m_out(&m_bytes), m_item(item), m_made(std::move(made))
    {
        m_out.setAutoFormatting(true);
        m_out.setAutoFormattingIndent(2);
    }

    QByteArray run();

private:
    bool isRss(QLatin1StringView name) const;
    void copyChannel();
    void writeItem();
    void writeOwn(QLatin1StringView name, const QString &value);
    void writeNotes();
    void writeEnclosure();

    QXmlStreamReader m_in;
    QByteArray m_bytes;
    QXmlStreamWriter m_out;
    const AppcastItem &m_item;
    const QDateTime m_made;
};

bool FeedCopy::isRss(QLatin1StringView name) const
{
    return m_in.isStartElement() && m_in.name() == name && m_in.namespaceUri().isEmpty();
}

QByteArray FeedCopy::run()
{
    while (!m_in.atEnd()) {
        m_in.readNext();
        if (m_in.hasError()) {
            throw std::runtime_error("the feed cannot be read: " +
                                     m_in.errorString().toStdString());
        }
        if (m_in.isCharacters() && m_in.isWhitespace()) {
            continue; // made anew
        }
        m_out.writeCurrentToken(m_in);
        if (isRss(channelName)) {
            copyChannel();
        }
    }
    // Read as it will be read: what is wrong is found before it is published.
    readAppcast(m_bytes);
    return m_bytes;
}

/// The item comes before the first one, or at the end where there is none.
void FeedCopy::copyChannel()
{
    m_out.writeTextElement(builtName, rssDate(m_made));
    bool written = false;
    for (int depth = 1; depth > 0 && !m_in.atEnd();) {
        m_in.readNext();
        if (m_in.isStartElement()) {
            if (depth == 1 && isRss(builtName)) {
                m_in.skipCurrentElement();
                continue;
            }
            if (depth == 1 && isRss(itemName) && !written) {
                writeItem();
                written = true;
            }
            ++depth;
        } else if (m_in.isEndElement()) {
            --depth;
            if (depth == 0 && !written) {
                writeItem();
            }
        } else if (m_in.isCharacters() && m_in.isWhitespace()) {
            continue;
        }
        if (!m_in.hasError()) {
            m_out.writeCurrentToken(m_in);
        }
    }
}

void FeedCopy::writeOwn(QLatin1StringView name, const QString &value)
{
    if (!value.isEmpty()) {
        m_out.writeTextElement(address, name, value);
    }
}

void FeedCopy::writeItem()
{
    m_out.writeStartElement(itemName);
    m_out.writeTextElement(QLatin1StringView("title"),
                           QStringLiteral("Quillmark ") + m_item.shortVersion);
    writeOwn(version, m_item.version);
    writeOwn(shortVersion, m_item.shortVersion);
    writeOwn(minimumSystemVersion, m_item.minimumSystemVersion);
    writeOwn(maximumSystemVersion, m_item.maximumSystemVersion);
    writeOwn(hardwareRequirements, m_item.architectures.join(QLatin1StringView(", ")));
    writeOwn(channel, m_item.channel);
    writeOwn(releaseNotesLink, m_item.notesAddress.toString(QUrl::FullyEncoded));
    m_out.writeTextElement(QLatin1StringView("pubDate"), rssDate(m_item.date.value_or(m_made)));
    writeNotes();
    writeEnclosure();
    m_out.writeEndElement();
}

void FeedCopy::writeNotes()
{
    if (m_item.notes.isEmpty()) {
        return;
    }
    m_out.writeStartElement(QLatin1StringView("description"));
    m_out.writeAttribute(address, format,
                         m_item.notesFormat == AppcastItem::NotesFormat::Markdown ? markdown
                                                                                  : plainText);
    m_out.writeCharacters(m_item.notes);
    m_out.writeEndElement();
}

void FeedCopy::writeEnclosure()
{
    m_out.writeEmptyElement(QLatin1StringView("enclosure"));
    m_out.writeAttribute(QLatin1StringView("url"), m_item.package.toString(QUrl::FullyEncoded));
    m_out.writeAttribute(QLatin1StringView("length"), QString::number(m_item.packageBytes));
    m_out.writeAttribute(QLatin1StringView("type"), QLatin1StringView("application/octet-stream"));
    m_out.writeAttribute(address, os, m_item.os);
    if (!m_item.packageSignature.isEmpty()) {
        m_out.writeAttribute(address, signature, m_item.packageSignature);
    }
}

} // namespace

QByteArray emptyFeed()
{
    QByteArray bytes;
    QXmlStreamWriter out(&bytes);
    out.writeStartDocument();
    out.writeStartElement(QLatin1StringView("rss"));
    out.writeAttribute(QLatin1StringView("version"), QLatin1StringView("2.0"));
    out.writeNamespace(address, prefix);
    out.writeStartElement(channelName);
    out.writeTextElement(QLatin1StringView("title"), QLatin1StringView("Quillmark"));
    out.writeEndDocument();
    return bytes;
}

QByteArray feedWith(const QByteArray &feed, const AppcastItem &item, const QDateTime &made)
{
    return FeedCopy(feed, item, made).run();
}

QString rssDate(const QDateTime &date)
{
    return QLocale::c().toString(date.toUTC(), QStringLiteral("ddd, dd MMM yyyy HH:mm:ss")) +
           QStringLiteral(" +0000");
}

} // namespace quillmark::tools
