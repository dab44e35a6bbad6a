// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/updates/Appcast.h"

#include <QString>
#include <QUrl>

#include <optional>
#include <vector>

namespace quillmark {

/// One paragraph of release notes, as plain text.
struct NoteLine {
    enum class Kind {
        Paragraph,
        Heading,
        Item, ///< of a list
        Code,
        Link, ///< a place in the web: its encoded address is shown, and opened when it is pressed
    };

    Kind kind = Kind::Paragraph;
    QString text;
    QUrl address; ///< of a link: HTTP or HTTPS
    QString mark; ///< of an item: what stands in front of its text, indented as deep as it is

    bool operator==(const NoteLine &) const = default;
};

/// A link to an address in the web; nothing for one elsewhere, or with a user's name in it, which
/// is there to mislead. Any thread.
std::optional<NoteLine> noteLink(const QUrl &address);

/// How much of the notes is shown.
inline constexpr qsizetype longestNotes = 20'000; ///< characters
inline constexpr std::size_t mostNoteLines = 400;

/// Makes release notes readable without interpreting them on the screen. Of Markdown
/// (CommonMark, its first 1000 lines) paragraphs, headings, lists and code are kept as such, and
/// links follow the paragraph in which they are; pictures leave their place, and HTML in it is
/// text. Of HTML only the text is kept. Nothing is ever fetched.
/// Needs a QGuiApplication. The main thread.
std::vector<NoteLine> readReleaseNotes(const QString &notes, AppcastItem::NotesFormat format);

} // namespace quillmark
