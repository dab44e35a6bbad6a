// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/Appcast.h"

#include "app/updates/UpdateError.h"

#include <gtest/gtest.h>

#include <optional>

namespace quillmark {
namespace {

QByteArray feed(const QByteArray &channel)
{
    return R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle">
<channel><title>Quillmark</title>)" +
           channel + "</channel></rss>";
}

const QByteArray enclosure =
    R"(<enclosure url="https://example.org/q.deb" length="1234" type="application/x-deb"
        sparkle:os="linux" sparkle:edSignature="c2ln"/>)";

QByteArray versioned(const QByteArray &inside)
{
    return feed("<item><sparkle:version>2.0</sparkle:version>" + inside + "</item>");
}

AppcastItem onlyItem(const QByteArray &bytes)
{
    const Appcast read = readAppcast(bytes);
    if (read.items.size() != 1) {
        throw std::runtime_error(std::to_string(read.items.size()) + " items");
    }
    return read.items.front();
}

std::optional<UpdateError::Case> refusal(const QByteArray &bytes)
{
    try {
        readAppcast(bytes);
    } catch (const UpdateError &error) {
        return error.which();
    }
    return std::nullopt;
}

TEST(Appcast, everythingOfAnItem)
{
    const AppcastItem item = onlyItem(feed(R"(<item>
        <title>Version 2.0</title>
        <sparkle:version> 200 </sparkle:version>
        <sparkle:shortVersionString>2.0 „Zwei“</sparkle:shortVersionString>
        <sparkle:minimumSystemVersion>6.1</sparkle:minimumSystemVersion>
        <sparkle:maximumSystemVersion>7</sparkle:maximumSystemVersion>
        <sparkle:hardwareRequirements>x86_64, arm64</sparkle:hardwareRequirements>
        <sparkle:channel>beta</sparkle:channel>
        <sparkle:releaseNotesLink>https://example.org/notes</sparkle:releaseNotesLink>
        <description sparkle:format="markdown"><![CDATA[# New & <good>]]></description>
        <pubDate>Fri, 20 Nov 2026 16:00:00 +0100</pubDate>)" +
                                           enclosure + "</item>"));
    EXPECT_EQ(item.version, QStringLiteral("200"));
    EXPECT_EQ(item.shortVersion, QStringLiteral("2.0 „Zwei“"));
    EXPECT_EQ(item.minimumSystemVersion, QStringLiteral("6.1"));
    EXPECT_EQ(item.maximumSystemVersion, QStringLiteral("7"));
    EXPECT_EQ(item.architectures, QStringList({QStringLiteral("x86_64"), QStringLiteral("arm64")}));
    EXPECT_EQ(item.os, QStringLiteral("linux"));
    EXPECT_EQ(item.channel, QStringLiteral("beta"));
    EXPECT_EQ(item.package, QUrl(QStringLiteral("https://example.org/q.deb")));
    EXPECT_EQ(item.packageSignature, QStringLiteral("c2ln"));
    EXPECT_EQ(item.packageBytes, 1234);
    EXPECT_EQ(item.notes, QStringLiteral("# New & <good>"));
    EXPECT_EQ(item.notesFormat, AppcastItem::NotesFormat::Markdown);
    EXPECT_EQ(item.notesAddress, QUrl(QStringLiteral("https://example.org/notes")));
    EXPECT_EQ(item.date, QDateTime(QDate(2026, 11, 20), QTime(15, 0), Qt::UTC));
}

TEST(Appcast, versionMayStandAtThePackage)
{
    const AppcastItem item = onlyItem(feed(
        R"(<item><enclosure url="https://example.org/q.deb" sparkle:version="3"
            sparkle:shortVersionString="3.0" sparkle:os="linux"/></item>)"));
    EXPECT_EQ(item.version, QStringLiteral("3"));
    EXPECT_EQ(item.shortVersion, QStringLiteral("3.0"));
    EXPECT_EQ(item.packageBytes, 0);
    EXPECT_TRUE(item.packageSignature.isEmpty());
}

TEST(Appcast, itemMayHaveAPackageForEachSystem)
{
    const Appcast read = readAppcast(
        versioned(enclosure + R"(<enclosure url="https://example.org/q.dmg" length="9"/>)"
                              R"(<enclosure url="https://example.org/q-arm.deb" sparkle:os="linux"
                        sparkle:hardwareRequirements="arm64"/>)"));
    ASSERT_EQ(read.items.size(), 3U);
    EXPECT_EQ(read.items[0].os, QStringLiteral("linux"));
    EXPECT_EQ(read.items[1].os, QString());
    EXPECT_EQ(read.items[2].architectures, QStringList(QStringLiteral("arm64")));
    for (const AppcastItem &item : read.items) {
        EXPECT_EQ(item.version, QStringLiteral("2.0"));
        EXPECT_EQ(item.shortVersion, QStringLiteral("2.0"));
    }
}

TEST(Appcast, prefixOrAddressMakesAName)
{
    const QByteArray inside =
        "<q:version>4</q:version><enclosure url='https://example.org/q.deb' q:os='linux'/>";
    EXPECT_EQ(onlyItem("<rss xmlns:q='http://www.andymatuschak.org/xml-namespaces/sparkle'>"
                       "<channel><item>" +
                       inside + "</item></channel></rss>")
                  .os,
              QStringLiteral("linux"));
    EXPECT_TRUE(readAppcast("<rss xmlns:q='https://example.org/other'><channel><item>" + inside +
                            "</item></channel></rss>")
                    .items.empty());
    EXPECT_EQ(onlyItem("<rss xmlns:sparkle='https://example.org/other'><channel><item>"
                       "<sparkle:version>5</sparkle:version>" +
                       enclosure + "</item></channel></rss>")
                  .version,
              QStringLiteral("5"));
}

TEST(Appcast, itemsWithoutVersionOrPackageAreLeftOut)
{
    EXPECT_TRUE(readAppcast(feed("<item>" + enclosure + "</item>")).items.empty());
    EXPECT_TRUE(readAppcast(versioned("<title>Only words</title>")).items.empty());
    EXPECT_TRUE(readAppcast(feed("")).items.empty());
}

TEST(Appcast, versionsHaveABoundedLength)
{
    const auto named = [](qsizetype version, qsizetype shortVersion) {
        return readAppcast(feed("<item><sparkle:version>" + QByteArray(version, '1') +
                                "</sparkle:version><sparkle:shortVersionString>" +
                                QByteArray(shortVersion, 'x') +
                                "\n y</sparkle:shortVersionString>" + enclosure + "</item>"))
            .items;
    };
    ASSERT_EQ(named(longestAppcastVersion, 3).size(), 1U);
    EXPECT_EQ(named(1, 3).front().shortVersion, QStringLiteral("xxx y"));
    EXPECT_EQ(named(1, 1000).front().shortVersion.size(), longestAppcastVersion);
    EXPECT_TRUE(named(longestAppcastVersion + 1, 3).empty());
}

TEST(Appcast, notesAreTakenAsTheyAreSaidToBe)
{
    using Format = AppcastItem::NotesFormat;
    const auto format = [](const QByteArray &attribute) {
        return onlyItem(versioned("<description " + attribute + ">x</description>" + enclosure))
            .notesFormat;
    };
    EXPECT_EQ(format(""), Format::Html);
    EXPECT_EQ(format("sparkle:format='html'"), Format::Html);
    EXPECT_EQ(format("sparkle:format='plain-text'"), Format::PlainText);
    EXPECT_EQ(format("format='plain-text'"), Format::Html) << "not the extension's attribute";
}

TEST(Appcast, dateIsTheMostGeneralOne)
{
    const QByteArray item = "<item><pubDate>Mon, 01 Jun 2026 00:00:00 GMT</pubDate></item>"
                            "<item><pubDate>Tue, 02 Jun 2026 00:00:00 GMT</pubDate></item>"
                            "<item><pubDate>Sun, 31 May 2026 00:00:00 GMT</pubDate></item>";
    const QByteArray published = "<pubDate>Wed, 03 Jun 2026 00:00:00 GMT</pubDate>";
    const QByteArray built = "<lastBuildDate>Thu, 04 Jun 2026 00:00:00 GMT</lastBuildDate>";
    const auto day = [](const QByteArray &channel) {
        const auto date = readAppcast(feed(channel)).date;
        return date ? date->date().day() : 0;
    };
    EXPECT_EQ(day(item), 2);
    EXPECT_EQ(day(item + published), 3);
    EXPECT_EQ(day(built + item + published), 4);
    EXPECT_EQ(day(""), 0);
    EXPECT_EQ(day("<pubDate>yesterday</pubDate>"), 0);
}

TEST(Appcast, datesAsFeedsWriteThem)
{
    const QDateTime wanted(QDate(2026, 11, 20), QTime(15, 4, 5), Qt::UTC);
    for (const char *text : {"Fri, 20 Nov 2026 15:04:05 +0000", "20 Nov 2026 17:04:05 +0200",
                             "Fri, 20 Nov 2026 15:04:05 GMT", " Fri, 20 Nov 2026 15:04:05 UTC ",
                             "Fri, 20 Nov 2026 15:04:05 UT", "Fri, 20 Nov 2026 15:04:05 Z"}) {
        EXPECT_EQ(dateFromRss(QString::fromLatin1(text)), wanted) << text;
    }
    for (const char *text : {"", "2026", "Fri, 31 Feb 2026 15:04:05 +0000", "GMT"}) {
        EXPECT_EQ(dateFromRss(QString::fromLatin1(text)), std::nullopt) << text;
    }
}

TEST(Appcast, whatIsNoFeedIsRefused)
{
    using Case = UpdateError::Case;
    const QByteArray whole = versioned(enclosure);
    for (const QByteArray &bytes : {
             QByteArray(),
             QByteArray("no XML"),
             QByteArray("<html><body/></html>"),
             QByteArray("<rss xmlns='https://example.org/other'/>"),
             QByteArray("<rss/><rss/>"),
             QByteArray("<rss>&unknown;</rss>"),
             QByteArray("<rss>\xff\xfe</rss>"),
             QByteArray(10, '\0'),
             whole.left(whole.size() - 3),
             whole.left(whole.size() / 2),
             QByteArray(whole).replace("</item>", "</channel>"),
         }) {
        EXPECT_EQ(refusal(bytes), Case::malformedFeed) << bytes.left(80).constData();
    }
    EXPECT_EQ(refusal(whole), std::nullopt);
}

TEST(Appcast, documentTypesAreRefused)
{
    const QByteArray expansion = R"(<!DOCTYPE rss [
        <!ENTITY a "aaaaaaaaaa"><!ENTITY b "&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;">
        <!ENTITY c "&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;"><!ENTITY d "&c;&c;&c;&c;&c;&c;&c;&c;">]>
        <rss><channel><title>&d;</title></channel></rss>)";
    const QByteArray file = R"(<!DOCTYPE rss [<!ENTITY f SYSTEM "file:///etc/hostname">]>
        <rss><channel><title>&f;</title></channel></rss>)";
    for (const QByteArray &bytes : {expansion, file, QByteArray("<!DOCTYPE rss><rss/>")}) {
        EXPECT_EQ(refusal(bytes), UpdateError::Case::malformedFeed);
    }
}

TEST(Appcast, fiveEntitiesOfXmlAreRead)
{
    const QByteArray notes = "<description>&lt;&gt;&amp;&quot;&apos;&#8364;</description>";
    EXPECT_EQ(onlyItem(versioned(notes + enclosure)).notes, QStringLiteral("<>&\"'€"));
}

TEST(Appcast, sizesHaveBounds)
{
    using Case = UpdateError::Case;
    EXPECT_EQ(refusal(QByteArray(largestAppcast + 1, ' ')), Case::tooLarge);
    EXPECT_EQ(refusal(feed(QByteArray("<item/>").repeated(mostAppcastItems))), std::nullopt);
    EXPECT_EQ(refusal(feed(QByteArray("<item/>").repeated(mostAppcastItems + 1))),
              Case::malformedFeed);
    const int inside = deepestAppcastElement - 2;
    EXPECT_EQ(
        refusal(feed(QByteArray("<a>").repeated(inside) + QByteArray("</a>").repeated(inside))),
        std::nullopt);
    EXPECT_EQ(refusal(feed(QByteArray("<a>").repeated(100'000))), Case::malformedFeed);
}

TEST(Appcast, attributesOfAnElementHaveABound)
{
    const auto element = [](int attributes) {
        QByteArray text = "<rss";
        for (int i = 0; i < attributes; ++i) {
            text += " a" + QByteArray::number(i) + "=''";
        }
        return text + "/>";
    };
    EXPECT_EQ(refusal(element(64)), std::nullopt);
    EXPECT_EQ(refusal(element(65)), UpdateError::Case::malformedFeed);
    // A hundred thousand would take half a minute if they were looked at.
    EXPECT_EQ(refusal(element(90'000)), UpdateError::Case::malformedFeed);
    EXPECT_EQ(refusal(feed("<description>" + QByteArray(4000, '=') + "</description>")),
              std::nullopt);
}

TEST(Appcast, lengthsThatAreNoneAreUnknown)
{
    for (const char *length : {"", "-5", "0", "1.5", "many", "99999999999999999999"}) {
        const QByteArray bytes = versioned(
            QByteArray("<enclosure url='https://example.org/q.deb' length='") + length + "'/>");
        EXPECT_EQ(onlyItem(bytes).packageBytes, 0) << length;
    }
}

/// Whatever is cut off or changed in a feed, it is read or refused.
TEST(Appcast, damagedFeedsAreReadOrRefused)
{
    const QByteArray whole = versioned("<pubDate>Fri, 20 Nov 2026 15:04:05 GMT</pubDate>"
                                       "<description><![CDATA[x]]></description>" +
                                       enclosure);
    for (qsizetype at = 0; at < whole.size(); ++at) {
        EXPECT_EQ(refusal(whole.left(at)), UpdateError::Case::malformedFeed) << at;
        for (const char other : {'<', '&', '"', '\0', '\xc3'}) {
            QByteArray changed = whole;
            changed[at] = other;
            const auto result = refusal(changed);
            EXPECT_TRUE(!result || *result == UpdateError::Case::malformedFeed) << at;
        }
    }
}

} // namespace
} // namespace quillmark
