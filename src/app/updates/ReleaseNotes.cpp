// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/ReleaseNotes.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextFragment>
#include <QTextList>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace quillmark {
namespace {

/// How many lines of Markdown are parsed: enough for paragraphs of several lines each.
constexpr qsizetype mostSourceLines = 1'000;
/// Deeper lists are indented no further.
constexpr int deepestList = 8;

NoteLine::Kind kindOf(const QTextBlock &block)
{
    const QTextBlockFormat format = block.blockFormat();
    if (format.headingLevel() > 0) {
        return NoteLine::Kind::Heading;
    }
    if (block.textList() != nullptr) {
        return NoteLine::Kind::Item;
    }
    return format.hasProperty(QTextFormat::BlockCodeFence) ||
                   format.hasProperty(QTextFormat::BlockCodeLanguage) || format.nonBreakableLines()
               ? NoteLine::Kind::Code
               : NoteLine::Kind::Paragraph;
}

/// What stands in front of an item of a list.
QString markOf(const QTextBlock &block)
{
    const QTextList *list = block.textList();
    const bool isNumbered = list->format().style() <= QTextListFormat::ListDecimal;
    const int depth = std::min(list->format().indent(), deepestList);
    const QString indent = QStringLiteral("    ").repeated(depth - 1);
    return indent + (isNumbered ? list->itemText(block) : QStringLiteral("\u2022")) +
           QStringLiteral("  ");
}

/// Appends a block and the links in it.
void appendBlock(std::vector<NoteLine> &lines, const QTextBlock &block)
{
    QString text;
    std::vector<NoteLine> links;
    for (auto each = block.begin(); !each.atEnd(); ++each) {
        const QTextFragment fragment = each.fragment();
        const QTextCharFormat format = fragment.charFormat();
        if (format.isImageFormat()) {
            continue;
        }
        text += fragment.text();
        if (!format.isAnchor()) {
            continue;
        }
        const auto link = noteLink(QUrl(format.anchorHref(), QUrl::StrictMode));
        if (link && std::find(links.begin(), links.end(), *link) == links.end()) {
            links.push_back(*link);
        }
    }
    text.replace(QChar::LineSeparator, u'\n');
    text.remove(QChar::ObjectReplacementCharacter);
    const NoteLine::Kind kind = kindOf(block);
    if (!text.trimmed().isEmpty()) {
        lines.push_back({kind, text, {}, kind == NoteLine::Kind::Item ? markOf(block) : QString()});
    }
    std::move(links.begin(), links.end(), std::back_inserter(lines));
}

std::vector<NoteLine> fromMarkdown(const QString &notes)
{
    QTextDocument document;
    document.setUndoRedoEnabled(false);
    // Without GitHub's tables: a large one takes many seconds, in which the window stands still.
    document.setMarkdown(notes.section(u'\n', 0, mostSourceLines - 1),
                         QTextDocument::MarkdownFeatures(QTextDocument::MarkdownDialectCommonMark) |
                             QTextDocument::MarkdownNoHTML);
    std::vector<NoteLine> lines;
    for (QTextBlock block = document.begin(); block.isValid() && lines.size() < mostNoteLines;
         block = block.next()) {
        appendBlock(lines, block);
    }
    return lines;
}

/// The blocks of a plain text: what blank lines part.
std::vector<NoteLine> fromPlainText(const QString &notes)
{
    std::vector<NoteLine> lines;
    QString paragraph;
    const auto flush = [&] {
        if (!paragraph.isEmpty()) {
            lines.push_back({NoteLine::Kind::Paragraph, std::exchange(paragraph, {}), {}, {}});
        }
    };
    for (const QString &line : notes.split(u'\n')) {
        if (line.trimmed().isEmpty()) {
            flush();
        } else {
            paragraph += (paragraph.isEmpty() ? QString() : QStringLiteral("\n")) + line;
        }
    }
    flush();
    return lines;
}

/// The five named characters that HTML shares with XML, and the space that does not break.
QString withCharacters(QString text)
{
    using Name = std::pair<const char *, const char *>;
    constexpr std::array names{
        Name{"&nbsp;", " "},  Name{"&lt;", "<"},   Name{"&gt;", ">"},
        Name{"&quot;", "\""}, Name{"&apos;", "'"}, Name{"&amp;", "&"}, // last: it could make others
    };
    for (const auto &[name, character] : names) {
        text.replace(QLatin1String(name), QLatin1String(character));
    }
    return text;
}

/// The text between the tags. Where a tag that begins or ends a paragraph stood, there is a
/// blank line.
QString textOfHtml(const QString &html)
{
    const QStringList paragraphs{
        QStringLiteral("p"),  QStringLiteral("div"), QStringLiteral("li"), QStringLiteral("ul"),
        QStringLiteral("ol"), QStringLiteral("br"),  QStringLiteral("h1"), QStringLiteral("h2"),
        QStringLiteral("h3"), QStringLiteral("h4"),  QStringLiteral("tr"), QStringLiteral("pre"),
    };
    const QStringList silent{QStringLiteral("script"), QStringLiteral("style"),
                             QStringLiteral("title")};
    QString text;
    QString silentUntil;
    qsizetype at = 0;
    while (at < html.size()) {
        const qsizetype open = html.indexOf(u'<', at);
        if (silentUntil.isEmpty()) {
            text += html.mid(at, open < 0 ? -1 : open - at).simplified();
        }
        const qsizetype close = open < 0 ? -1 : html.indexOf(u'>', open);
        if (close < 0) {
            break;
        }
        QString name = html.mid(open + 1, close - open - 1).toLower();
        const bool isEnd = name.startsWith(u'/');
        name = name.mid(isEnd ? 1 : 0).section(u' ', 0, 0).section(u'/', 0, 0);
        if (silent.contains(name)) {
            silentUntil = isEnd ? QString() : name;
        }
        text += paragraphs.contains(name) ? QStringLiteral("\n\n") : QStringLiteral(" ");
        at = close + 1;
    }
    return withCharacters(text);
}

} // namespace

std::optional<NoteLine> noteLink(const QUrl &address)
{
    const bool isWeb =
        address.scheme() == QLatin1String("https") || address.scheme() == QLatin1String("http");
    if (!isWeb || !address.isValid() || address.host().isEmpty() || !address.userInfo().isEmpty()) {
        return std::nullopt;
    }
    // As it is sent: letters that only look like others show themselves.
    return NoteLine{NoteLine::Kind::Link, QString::fromLatin1(address.toEncoded()), address, {}};
}

std::vector<NoteLine> readReleaseNotes(const QString &notes, AppcastItem::NotesFormat format)
{
    QString shown = notes.left(longestNotes);
    shown.remove(u'\r');
    std::vector<NoteLine> lines;
    switch (format) {
    case AppcastItem::NotesFormat::Markdown:
        lines = fromMarkdown(shown);
        break;
    case AppcastItem::NotesFormat::PlainText:
        lines = fromPlainText(shown);
        break;
    case AppcastItem::NotesFormat::Html:
        lines = fromPlainText(textOfHtml(shown));
        for (NoteLine &line : lines) {
            line.text = line.text.simplified();
        }
        break;
    }
    lines.resize(std::min(lines.size(), mostNoteLines));
    return lines;
}

} // namespace quillmark
