// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/Appcast.h"

#include "app/updates/AppcastNames.h"
#include "app/updates/UpdateError.h"

#include <QRegularExpression>
#include <QXmlStreamReader>

#include <array>
#include <utility>

namespace quillmark {
namespace {

/// More attributes of one element than any feed has.
constexpr int mostAttributes = 64;
/// More signs between two elements than any text has in which they are none of an attribute.
constexpr int mostEqualSigns = 4096;

/// Qt compares each attribute of an element with all those before it: a feed of nothing else
/// would take half a minute.
bool hasHugeElement(const QByteArray &bytes)
{
    int signs = 0;
    for (const char each : bytes) {
        signs = each == '<' ? 0 : signs + (each == '=' ? 1 : 0);
        if (signs > mostEqualSigns) {
            return true;
        }
    }
    return false;
}

/// Goes through a feed once.
class AppcastReader
{
public:
    explicit AppcastReader(const QByteArray &bytes) : m_xml(bytes) {}

    Appcast read();

private:
    /// The next start of an element inside the current one; false at the current one's end.
    bool nextElement();
    void skip();
    /// The text of the current element, without that of elements in it.
    QString text();

    bool isOurs(QLatin1StringView name) const;
    bool isRss(QLatin1StringView name) const;
    static QString attribute(const QXmlStreamAttributes &all, QLatin1StringView name);

    void readChannel();
    void readItem();
    bool readOwnElement(AppcastItem &item);
    void readRssElement(AppcastItem &item, std::vector<AppcastItem> &packages);
    AppcastItem readEnclosure();
    void readNotes(AppcastItem &item);

    QXmlStreamReader::TokenType advance();
    [[noreturn]] static void refuse(const QString &why);

    QXmlStreamReader m_xml;
    int m_depth = 0;
    int m_itemsRead = 0;
    Appcast m_appcast;
    std::optional<QDateTime> m_built;
    std::optional<QDateTime> m_published;
    std::optional<QDateTime> m_newest;
};

void AppcastReader::refuse(const QString &why)
{
    throw UpdateError(UpdateError::Case::malformedFeed, why);
}

QXmlStreamReader::TokenType AppcastReader::advance()
{
    switch (const auto token = m_xml.readNext()) {
    case QXmlStreamReader::Invalid:
        refuse(m_xml.errorString() + QStringLiteral(" (line ") +
               QString::number(m_xml.lineNumber()) + u')');
    case QXmlStreamReader::DTD:
        refuse(QStringLiteral("it declares a document type."));
    case QXmlStreamReader::EntityReference:
        refuse(QStringLiteral("it uses an entity of its own."));
    case QXmlStreamReader::StartElement:
        if (++m_depth > deepestAppcastElement) {
            refuse(QStringLiteral("its elements are nested too deeply."));
        }
        if (m_xml.attributes().size() > mostAttributes) {
            refuse(QStringLiteral("an element has too many attributes."));
        }
        return token;
    case QXmlStreamReader::EndElement:
        --m_depth;
        return token;
    default:
        return token;
    }
}

bool AppcastReader::nextElement()
{
    while (true) {
        switch (advance()) {
        case QXmlStreamReader::StartElement:
            return true;
        case QXmlStreamReader::EndElement:
        case QXmlStreamReader::EndDocument:
            return false;
        default:
            break;
        }
    }
}

void AppcastReader::skip()
{
    for (const int within = m_depth; m_depth >= within;) {
        advance();
    }
}

QString AppcastReader::text()
{
    QString all;
    for (const int within = m_depth; m_depth >= within;) {
        if (advance() == QXmlStreamReader::Characters && m_depth == within) {
            all += m_xml.text();
        }
    }
    return all.trimmed();
}

bool AppcastReader::isOurs(QLatin1StringView name) const
{
    return m_xml.name() == name && (m_xml.prefix() == AppcastNames::prefix ||
                                    m_xml.namespaceUri() == AppcastNames::address);
}

bool AppcastReader::isRss(QLatin1StringView name) const
{
    return m_xml.name() == name && m_xml.namespaceUri().isEmpty();
}

QString AppcastReader::attribute(const QXmlStreamAttributes &all, QLatin1StringView name)
{
    for (const QXmlStreamAttribute &each : all) {
        if (each.name() == name && (each.prefix() == AppcastNames::prefix ||
                                    each.namespaceUri() == AppcastNames::address)) {
            return each.value().toString().trimmed();
        }
    }
    return {};
}

Appcast AppcastReader::read()
{
    bool isFeed = false;
    if (nextElement()) {
        isFeed = isRss(QLatin1StringView("rss"));
        while (isFeed && nextElement()) {
            if (isRss(QLatin1StringView("channel"))) {
                readChannel();
            } else {
                skip();
            }
        }
    }
    if (!isFeed) {
        refuse(QStringLiteral("it is no RSS feed."));
    }
    // What follows must be well-formed too: a document that broke off has no end.
    while (advance() != QXmlStreamReader::EndDocument) {
    }
    m_appcast.date = m_built ? m_built : m_published ? m_published : m_newest;
    return std::move(m_appcast);
}

void AppcastReader::readChannel()
{
    while (nextElement()) {
        if (isRss(QLatin1StringView("item"))) {
            readItem();
        } else if (isRss(QLatin1StringView("lastBuildDate"))) {
            m_built = dateFromRss(text());
        } else if (isRss(QLatin1StringView("pubDate"))) {
            m_published = dateFromRss(text());
        } else {
            skip();
        }
    }
}

void AppcastReader::readItem()
{
    if (++m_itemsRead > mostAppcastItems) {
        refuse(QStringLiteral("it has too many items."));
    }
    AppcastItem item;
    std::vector<AppcastItem> packages;
    while (nextElement()) {
        if (!readOwnElement(item)) {
            readRssElement(item, packages);
        }
    }
    if (item.date && (!m_newest || *item.date > *m_newest)) {
        m_newest = item.date;
    }
    // What an item says of itself holds for each of its packages that does not say otherwise.
    for (AppcastItem &package : packages) {
        AppcastItem whole = item;
        const auto prefer = [](QString &general, const QString &particular) {
            if (!particular.isEmpty()) {
                general = particular;
            }
        };
        prefer(whole.version, package.version);
        prefer(whole.shortVersion, package.shortVersion);
        prefer(whole.minimumSystemVersion, package.minimumSystemVersion);
        prefer(whole.os, package.os);
        if (!package.architectures.isEmpty()) {
            whole.architectures = package.architectures;
        }
        whole.package = package.package;
        whole.packageSignature = package.packageSignature;
        whole.packageBytes = package.packageBytes;
        if (whole.version.isEmpty() || whole.version.size() > longestAppcastVersion) {
            continue; // cannot be compared with anything
        }
        whole.shortVersion = whole.shortVersion.simplified().left(longestAppcastVersion);
        if (whole.shortVersion.isEmpty()) {
            whole.shortVersion = whole.version;
        }
        m_appcast.items.push_back(std::move(whole));
    }
}

QStringList listOf(const QString &text)
{
    static const QRegularExpression separators(QStringLiteral("[,\\s]+"));
    return text.split(separators, Qt::SkipEmptyParts);
}

bool AppcastReader::readOwnElement(AppcastItem &item)
{
    using Text = std::pair<QLatin1StringView, QString &>;
    const std::array texts{
        Text{AppcastNames::version, item.version},
        Text{AppcastNames::shortVersion, item.shortVersion},
        Text{AppcastNames::minimumSystemVersion, item.minimumSystemVersion},
        Text{AppcastNames::maximumSystemVersion, item.maximumSystemVersion},
        Text{AppcastNames::os, item.os},
        Text{AppcastNames::channel, item.channel},
    };
    for (const auto &[name, value] : texts) {
        if (isOurs(name)) {
            value = text();
            return true;
        }
    }
    if (isOurs(AppcastNames::hardwareRequirements)) {
        item.architectures = listOf(text());
        return true;
    }
    if (isOurs(AppcastNames::releaseNotesLink)) {
        item.notesAddress = QUrl(text(), QUrl::StrictMode);
        return true;
    }
    return false;
}

void AppcastReader::readRssElement(AppcastItem &item, std::vector<AppcastItem> &packages)
{
    if (isRss(QLatin1StringView("description"))) {
        readNotes(item);
    } else if (isRss(QLatin1StringView("pubDate"))) {
        item.date = dateFromRss(text());
    } else if (isRss(QLatin1StringView("enclosure"))) {
        if (packages.size() < deepestAppcastElement) {
            packages.push_back(readEnclosure());
        }
        skip();
    } else {
        skip();
    }
}

AppcastItem AppcastReader::readEnclosure()
{
    const QXmlStreamAttributes all = m_xml.attributes();
    AppcastItem package;
    package.package = QUrl(all.value(QLatin1StringView("url")).toString(), QUrl::StrictMode);
    bool isNumber = false;
    const qint64 length = all.value(QLatin1StringView("length")).toLongLong(&isNumber);
    package.packageBytes = isNumber && length > 0 ? length : 0;
    package.version = attribute(all, AppcastNames::version);
    package.shortVersion = attribute(all, AppcastNames::shortVersion);
    package.packageSignature = attribute(all, AppcastNames::signature);
    package.minimumSystemVersion = attribute(all, AppcastNames::minimumSystemVersion);
    package.os = attribute(all, AppcastNames::os);
    package.architectures = listOf(attribute(all, AppcastNames::hardwareRequirements));
    return package;
}

void AppcastReader::readNotes(AppcastItem &item)
{
    const QString format = attribute(m_xml.attributes(), AppcastNames::format);
    item.notesFormat = format == AppcastNames::markdown    ? AppcastItem::NotesFormat::Markdown
                       : format == AppcastNames::plainText ? AppcastItem::NotesFormat::PlainText
                                                           : AppcastItem::NotesFormat::Html;
    item.notes = text();
}

} // namespace

Appcast readAppcast(const QByteArray &bytes)
{
    if (bytes.size() > largestAppcast) {
        throw UpdateError(UpdateError::Case::tooLarge);
    }
    if (hasHugeElement(bytes)) {
        throw UpdateError(UpdateError::Case::malformedFeed,
                          QStringLiteral("an element has too many attributes."));
    }
    return AppcastReader(bytes).read();
}

std::optional<QDateTime> dateFromRss(const QString &text)
{
    // Qt knows offsets, not the names that mean none.
    static const QRegularExpression zone(QStringLiteral("\\s(?:GMT|UTC?|Z)$"));
    QString numeric = text.trimmed();
    numeric.replace(zone, QStringLiteral(" +0000"));
    const QDateTime date = QDateTime::fromString(numeric, Qt::RFC2822Date);
    return date.isValid() ? std::optional(date.toUTC()) : std::nullopt;
}

} // namespace quillmark
