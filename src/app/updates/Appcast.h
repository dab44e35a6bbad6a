// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>
#include <vector>

namespace quillmark {

/// One package of a version, for one kind of system. Texts are as the feed has them, without
/// white space at their ends, and empty where it has none.
struct AppcastItem {
    /// How the notes are written. A feed that does not say means HTML.
    enum class NotesFormat { Html, Markdown, PlainText };

    QString version;      ///< what versions are compared by
    QString shortVersion; ///< what people call it; the version itself where it has no other name
    QString minimumSystemVersion;
    QString maximumSystemVersion;
    QStringList architectures; ///< empty: all of them
    QString os;                ///< empty: the publisher's first platform, which is not this one
    QString channel;           ///< empty: for everybody
    QUrl package;
    QString packageSignature; ///< base64
    qint64 packageBytes = 0;  ///< 0 where the feed does not tell
    QString notes;
    NotesFormat notesFormat = NotesFormat::Html;
    QUrl notesAddress; ///< a page with the notes; never fetched
    std::optional<QDateTime> date;
};

/// A feed of versions: RSS 2.0 with the extension that publishers of desktop programs use.
struct Appcast {
    /// In the feed's order, without those that have no package or no version of usable length.
    std::vector<AppcastItem> items;
    /// When it was made: the channel's lastBuildDate, else its pubDate, else the newest date
    /// of an item.
    std::optional<QDateTime> date;
};

/// How much a feed may hold.
inline constexpr qsizetype largestAppcast = 1'048'576; ///< bytes
inline constexpr int mostAppcastItems = 1000;
inline constexpr int deepestAppcastElement = 16;
inline constexpr qsizetype longestAppcastVersion = 100; ///< characters

/// Reads a feed. Nothing outside the bytes is looked at, and time and memory are bounded by
/// their number. A document type declaration is refused, and with it every entity but the five
/// of XML itself (XML 1.0, section 4.6). Elements that are not known are passed over.
///
/// Throws UpdateError (malformedFeed, tooLarge). Any thread.
Appcast readAppcast(const QByteArray &bytes);

/// A date as RSS writes it (RFC 822, section 5, with years of four digits), with an offset or
/// one of the names GMT, UT, UTC and Z.
std::optional<QDateTime> dateFromRss(const QString &text);

} // namespace quillmark
