// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "appcast/AppcastTool.h"

#include "app/updates/Appcast.h"
#include "app/updates/Signature.h"
#include "appcast/SecretKey.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdint>
#include <stdexcept>
#include <string>

namespace quillmark::tools {
namespace {

class AppcastTool : public ::testing::Test
{
protected:
    AppcastTool() { m_key = run({"keys", m_secret}); }

    static QString run(const std::vector<std::string> &arguments)
    {
        QStringList all;
        for (const std::string &each : arguments) {
            all << QString::fromStdString(each);
        }
        return runAppcastTool(all);
    }
    /// What the tool has to say against it.
    static std::string complaint(const std::vector<std::string> &arguments)
    {
        try {
            run(arguments);
        } catch (const std::exception &error) {
            return error.what();
        }
        return {};
    }
    QString add(const std::string &version, const std::vector<std::string> &more = {})
    {
        std::vector<std::string> all{"add",
                                     m_secret,
                                     m_feed,
                                     "--package",
                                     m_package,
                                     "--url",
                                     "https://example.org/q_" + version + ".deb",
                                     "--version",
                                     version};
        all.insert(all.end(), more.begin(), more.end());
        return run(all);
    }
    QByteArray feed() const { return QByteArray::fromStdString(test::readFile(m_feed)); }
    bool isSealed() const
    {
        const auto signature =
            signatureFromBase64(QByteArray::fromStdString(test::readFile(m_feed + ".sig")));
        return signature && isSignedBy(publicKeyFromBase64(m_key.toLatin1()).value(), *signature,
                                       bytesOf(feed()));
    }

    const test::TempDir m_folder;
    const std::string m_secret = m_folder / "secret";
    const std::string m_feed = m_folder / "appcast.xml";
    const std::string m_package = m_folder.write("q.deb", "a package");
    QString m_key;
};

TEST_F(AppcastTool, secretKeyIsTheOwnersAlone)
{
    struct stat status {};
    ASSERT_EQ(::stat(m_secret.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    EXPECT_EQ(run({"public", m_secret}), m_key);
    EXPECT_TRUE(publicKeyFromBase64(m_key.toLatin1()));
    EXPECT_FALSE(test::readFile(m_secret).find(m_key.toStdString()) != std::string::npos);
}

TEST_F(AppcastTool, secretKeyIsNeverWrittenOver)
{
    const std::string before = test::readFile(m_secret);
    EXPECT_FALSE(complaint({"keys", m_secret}).empty());
    EXPECT_EQ(test::readFile(m_secret), before);
}

TEST_F(AppcastTool, everyKeyIsAnother)
{
    EXPECT_NE(run({"keys", m_folder / "other"}), m_key);
}

TEST_F(AppcastTool, signsAPackage)
{
    const QString attributes = run({"sign", m_secret, m_package});
    EXPECT_TRUE(attributes.endsWith(QStringLiteral(" length=\"9\"")));
    const auto signature = signatureFromBase64(attributes.section(u'"', 1, 1).toLatin1());
    ASSERT_TRUE(signature);
    EXPECT_TRUE(isSignedBy(publicKeyFromBase64(m_key.toLatin1()).value(), *signature,
                           bytesOf("a package")));
}

TEST_F(AppcastTool, makesASignedFeed)
{
    const std::string notes = m_folder.write("notes.md", "# New\n\n- <b> & \"quotes\" ü\n");
    EXPECT_EQ(
        add("2.0", {"--notes", notes, "--short-version", "Two", "--architecture", "x86_64,arm64",
                    "--minimum-system", "5.10", "--date", "2025-11-20T12:00:00Z"}),
        QString::fromStdString(m_feed) + QStringLiteral(" offers version Two"));
    EXPECT_TRUE(isSealed());
    const Appcast read = readAppcast(feed());
    EXPECT_EQ(read.date, QDateTime(QDate(2025, 11, 20), QTime(12, 0), Qt::UTC));
    ASSERT_EQ(read.items.size(), 1U);
    const AppcastItem &item = read.items.front();
    EXPECT_EQ(item.version, QStringLiteral("2.0"));
    EXPECT_EQ(item.shortVersion, QStringLiteral("Two"));
    EXPECT_EQ(item.os, QStringLiteral("linux"));
    EXPECT_EQ(item.architectures, QStringList({QStringLiteral("x86_64"), QStringLiteral("arm64")}));
    EXPECT_EQ(item.minimumSystemVersion, QStringLiteral("5.10"));
    EXPECT_EQ(item.package, QUrl(QStringLiteral("https://example.org/q_2.0.deb")));
    EXPECT_EQ(item.packageBytes, 9);
    EXPECT_EQ(item.notesFormat, AppcastItem::NotesFormat::Markdown);
    EXPECT_EQ(item.notes, QStringLiteral("# New\n\n- <b> & \"quotes\" ü"));
    EXPECT_TRUE(QString(run({"sign", m_secret, m_package})).contains(item.packageSignature));
}

TEST_F(AppcastTool, newVersionsComeFirst)
{
    add("2.0", {"--date", "2025-01-01T00:00:00Z"});
    add("2.1", {"--date", "2025-02-01T00:00:00Z"});
    EXPECT_TRUE(isSealed());
    const Appcast read = readAppcast(feed());
    ASSERT_EQ(read.items.size(), 2U);
    EXPECT_EQ(read.items[0].version, QStringLiteral("2.1"));
    EXPECT_EQ(read.items[1].version, QStringLiteral("2.0"));
    EXPECT_EQ(read.date->date().month(), 2);
    EXPECT_EQ(feed().count("<lastBuildDate>"), 1);
}

TEST_F(AppcastTool, otherSystemsItemsStay)
{
    m_folder.write("appcast.xml", R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle"
     xmlns:dc="http://purl.org/dc/elements/1.1/">
  <!-- by hand -->
  <channel>
    <title>Quillmark</title>
    <dc:creator>Somebody</dc:creator>
    <item>
      <title>1.0</title>
      <sparkle:version>1.0</sparkle:version>
      <sparkle:criticalUpdate/>
      <description><![CDATA[<p>Hello &amp; welcome</p>]]></description>
      <enclosure url="https://example.org/q.dmg" length="5" sparkle:edSignature="c2ln"/>
    </item>
  </channel>
</rss>)");
    add("2.0");
    const Appcast read = readAppcast(feed());
    ASSERT_EQ(read.items.size(), 2U);
    EXPECT_EQ(read.items[1].version, QStringLiteral("1.0"));
    EXPECT_EQ(read.items[1].os, QString());
    EXPECT_EQ(read.items[1].packageSignature, QStringLiteral("c2ln"));
    EXPECT_EQ(read.items[1].notes, QStringLiteral("<p>Hello &amp; welcome</p>"));
    for (const char *kept : {"<!-- by hand -->", "<dc:creator>Somebody</dc:creator>",
                             "<sparkle:criticalUpdate", "<![CDATA["}) {
        EXPECT_TRUE(feed().contains(kept)) << kept << feed().constData();
    }
}

TEST_F(AppcastTool, sealsAFeedThatWasChanged)
{
    add("2.0");
    const QByteArray changed = feed().replace("Quillmark", "Other");
    m_folder.write("appcast.xml", changed.toStdString());
    EXPECT_FALSE(isSealed());
    run({"seal", m_secret, m_feed});
    EXPECT_TRUE(isSealed());
    EXPECT_EQ(feed(), changed);
}

TEST_F(AppcastTool, checksAFeedAsTheProgramDoes)
{
    add("2.0");
    EXPECT_EQ(run({"check", m_key.toStdString(), m_feed}),
              QStringLiteral("this system is offered version 2.0"));
    m_folder.write("appcast.xml", feed().replace("2.0", "3.0").toStdString());
    EXPECT_NE(complaint({"check", m_key.toStdString(), m_feed}).find("signature"),
              std::string::npos);
}

TEST_F(AppcastTool, refusesWhatNobodyCouldUse)
{
    const std::vector<std::string> base{"add", m_secret, m_feed, "--package", m_package};
    const auto with = [&](const std::vector<std::string> &more) {
        std::vector<std::string> all = base;
        all.insert(all.end(), more.begin(), more.end());
        return complaint(all);
    };
    EXPECT_NE(with({"--version", "2"}).find("--url"), std::string::npos);
    EXPECT_NE(with({"--url", "https://example.org/q.deb"}).find("--version"), std::string::npos);
    for (const char *address : {"http://example.org/q.deb", "https://example.org/q.sh", "q.deb",
                                "https://u:p@e.org/q.deb"}) {
        EXPECT_NE(with({"--version", "2", "--url", address}).find("no HTTPS address"),
                  std::string::npos)
            << address;
    }
    EXPECT_FALSE(
        with({"--version", "2", "--url", "https://e.org/q.deb", "--date", "soon"}).empty());
    EXPECT_FALSE(with({"--unknown", "2"}).empty());
    EXPECT_FALSE(complaint({"add", m_secret}).empty());
    EXPECT_FALSE(complaint({"sign", m_secret, m_folder / "missing.deb"}).empty());
    EXPECT_FALSE(complaint({"sign", m_package, m_package}).empty()) << "no secret key";
    EXPECT_FALSE(std::filesystem::exists(m_feed));
}

TEST_F(AppcastTool, brokenFeedStaysAsItIs)
{
    m_folder.write("appcast.xml", "<rss><channel>");
    EXPECT_THROW(add("2.0"), std::exception);
    EXPECT_THROW(run({"seal", m_secret, m_feed}), std::exception);
    EXPECT_EQ(feed(), "<rss><channel>");
    EXPECT_FALSE(std::filesystem::exists(m_feed + ".sig"));
}

TEST_F(AppcastTool, datesNeverComeFromTheFutureNorGoBack)
{
    add("2.0", {"--date", "2025-02-01T00:00:00Z"});
    const QByteArray before = feed();
    const auto complaintAbout = [&](const std::string &date) {
        try {
            add("2.1", {"--date", date});
        } catch (const std::exception &error) {
            return std::string(error.what());
        }
        return std::string();
    };
    const QDateTime tomorrow = QDateTime::currentDateTimeUtc().addDays(1);
    EXPECT_NE(complaintAbout(tomorrow.toString(Qt::ISODate).toStdString()).find("future"),
              std::string::npos);
    EXPECT_NE(complaintAbout("2025-01-31T23:59:59Z").find("newer date"), std::string::npos);
    EXPECT_EQ(feed(), before);
    EXPECT_TRUE(isSealed());
    EXPECT_EQ(complaintAbout("2025-02-01T00:00:00Z"), "");
}

TEST_F(AppcastTool, sealsNoFeedWithoutADate)
{
    m_folder.write("appcast.xml", "<rss><channel><item/></channel></rss>");
    EXPECT_NE(complaint({"seal", m_secret, m_feed}).find("when it was made"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(m_feed + ".sig"));
}

TEST_F(AppcastTool, refusesAPackageThatNobodyWouldFetch)
{
    std::filesystem::resize_file(m_package, std::uintmax_t{1024} * 1024 * 1024 + 1); // all holes
    EXPECT_THROW(add("2.0"), std::runtime_error);
    EXPECT_FALSE(std::filesystem::exists(m_feed));
    EXPECT_NE(complaint({"sign", m_secret, m_package}).find("larger"), std::string::npos);
}

TEST_F(AppcastTool, unknownCommandsAreExplained)
{
    for (const std::vector<std::string> &arguments :
         {std::vector<std::string>{}, {"help"}, {"--help"}}) {
        EXPECT_EQ(complaint(arguments), appcastUsage().toStdString());
    }
}

} // namespace
} // namespace quillmark::tools
