// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/ReleaseNotes.h"
#include "app/updates/NotesModel.h"

#include <gtest/gtest.h>

#include <ostream>

namespace quillmark {

void PrintTo(const NoteLine &line, std::ostream *out)
{
    *out << static_cast<int>(line.kind) << ' ' << line.mark.toStdString() << " \""
         << line.text.toStdString() << "\" " << line.address.toString().toStdString();
}

namespace {

using Format = AppcastItem::NotesFormat;
using Kind = NoteLine::Kind;
using Lines = std::vector<NoteLine>;

Lines read(const char *notes, Format format)
{
    return readReleaseNotes(QString::fromUtf8(notes), format);
}
NoteLine line(Kind kind, const char *text, const char *address = "")
{
    return {kind, QString::fromUtf8(text), QUrl(QString::fromUtf8(address)), QString()};
}
NoteLine item(const char *mark, const char *text)
{
    return {Kind::Item, QString::fromUtf8(text), QUrl(), QString::fromUtf8(mark)};
}

TEST(ReleaseNotes, markdownIsReadable)
{
    EXPECT_EQ(read("# New *here*\n\nOne\nparagraph, **bold** and `code`.\n\n- a\n- b\n\n"
                   "1. first\n2. second\n\n```\nx = 1\n```\n",
                   Format::Markdown),
              (Lines{line(Kind::Heading, "New here"),
                     line(Kind::Paragraph, "One paragraph, bold and code."), item("•  ", "a"),
                     item("•  ", "b"), item("1.  ", "first"), item("2.  ", "second"),
                     line(Kind::Code, "x = 1")}));
}

TEST(ReleaseNotes, listsInListsAreIndented)
{
    EXPECT_EQ(read("- a\n  - b\n", Format::Markdown),
              (Lines{item("•  ", "a"), item("    •  ", "b")}));
}

TEST(ReleaseNotes, linksFollowTheirParagraphWithTheirAddress)
{
    EXPECT_EQ(read("See [the page](https://example.org/a?b=c) and [it](https://example.org/a?b=c)"
                   " or <http://example.org/>.",
                   Format::Markdown),
              (Lines{line(Kind::Paragraph, "See the page and it or http://example.org/."),
                     line(Kind::Link, "https://example.org/a?b=c", "https://example.org/a?b=c"),
                     line(Kind::Link, "http://example.org/", "http://example.org/")}));
}

TEST(ReleaseNotes, addressesAreShownAsTheyAreSent)
{
    // The first letter of the host is Cyrillic.
    const Lines lines = read("[x](https://\u0430pple.example/\u00fc)", Format::Markdown);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[1].text, QStringLiteral("https://xn--pple-43d.example/%C3%BC"));
}

TEST(ReleaseNotes, linksThatLeadElsewhereAreText)
{
    for (const char *address :
         {"file:///etc/passwd", "javascript:alert(1)", "relative", "#here", "mailto:a@example.org",
          "data:text/html,x", "https://", "https://example.org@example.net/"}) {
        EXPECT_EQ(read(("[press](" + std::string(address) + ")").c_str(), Format::Markdown),
                  Lines{line(Kind::Paragraph, "press")})
            << address;
    }
}

TEST(ReleaseNotes, picturesAndHtmlOfMarkdownAreNotInterpreted)
{
    EXPECT_EQ(read("before ![alt](https://example.org/x.png) after", Format::Markdown),
              Lines{line(Kind::Paragraph, "before  after")});
    const Lines html = read("<img src=\"https://example.org/x.png\"> <b>x</b>", Format::Markdown);
    ASSERT_EQ(html.size(), 1U);
    EXPECT_TRUE(html.front().text.contains(QStringLiteral("<b>x</b>")));
}

TEST(ReleaseNotes, plainTextIsAsItIs)
{
    EXPECT_EQ(
        read("# one\r\n<b>two</b>\n\n\n- three", Format::PlainText),
        (Lines{line(Kind::Paragraph, "# one\n<b>two</b>"), line(Kind::Paragraph, "- three")}));
}

TEST(ReleaseNotes, htmlIsItsText)
{
    EXPECT_EQ(read("<html><head><title>t</title><style>p{}</style></head><body><h2>New</h2>"
                   "<p>One &lt;b&gt; &amp;amp; <i>two</i></p><script>alert('<p>')</script>"
                   "<ul><li>a</li><li>b<img src='https://example.org/x'></li></ul>end",
                   Format::Html),
              (Lines{line(Kind::Paragraph, "New"), line(Kind::Paragraph, "One <b> &amp; two"),
                     line(Kind::Paragraph, "a"), line(Kind::Paragraph, "b"),
                     line(Kind::Paragraph, "end")}));
    EXPECT_EQ(read("a < b", Format::Html), Lines{line(Kind::Paragraph, "a")}) << "a broken tag";
}

TEST(ReleaseNotes, nothingIsNothing)
{
    for (const Format format : {Format::Html, Format::Markdown, Format::PlainText}) {
        EXPECT_EQ(read("", format), Lines());
        EXPECT_EQ(read(" \n\n ", format), Lines());
    }
}

TEST(ReleaseNotes, areBounded)
{
    for (const Format format : {Format::Html, Format::Markdown, Format::PlainText}) {
        const Lines many = readReleaseNotes(QStringLiteral("# a\n\n").repeated(100'000), format);
        EXPECT_LE(many.size(), mostNoteLines);
        EXPECT_GE(many.size(), 1U);
        const Lines deep = readReleaseNotes(QString(1'000'000, u'>'), format);
        EXPECT_LE(deep.size(), mostNoteLines);
    }
}

TEST(ReleaseNotes, tablesAreText)
{
    const Lines lines = read("| a | b |\n|---|---|\n| 1 | 2 |\n", Format::Markdown);
    EXPECT_EQ(lines, Lines{line(Kind::Paragraph, "| a | b | |---|---| | 1 | 2 |")});
}

TEST(ReleaseNotes, linesOfOneParagraphAreBounded)
{
    const Lines lines = readReleaseNotes(QStringLiteral("a\n").repeated(5'000), Format::Markdown);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines.front().text.count(u'a'), 1'000);
}

TEST(ReleaseNotes, deepListsAreIndentedOnlySoFar)
{
    const Lines lines =
        readReleaseNotes(QStringLiteral("- ").repeated(40) + u'x', Format::Markdown);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back().text, QStringLiteral("x"));
    EXPECT_EQ(lines.back().mark, QString(28, u' ') + QStringLiteral("\u2022  "));
}

TEST(NotesModel, showsWhatEachLineIs)
{
    NotesModel model;
    model.setLines({line(Kind::Heading, "New"),
                    line(Kind::Link, "https://example.org/", "https://example.org/")});
    ASSERT_EQ(model.rowCount(), 2);
    EXPECT_EQ(model.data(model.index(0), NotesModel::KindRole), QStringLiteral("Heading"));
    EXPECT_EQ(model.data(model.index(1), NotesModel::KindRole), QStringLiteral("Link"));
    EXPECT_EQ(model.data(model.index(1), NotesModel::AddressRole).toUrl(),
              QUrl(QStringLiteral("https://example.org/")));
    EXPECT_EQ(model.data(model.index(0), Qt::DecorationRole), QVariant());
}

} // namespace
} // namespace quillmark
