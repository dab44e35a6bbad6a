// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/FeedCheck.h"

#include "app/updates/PackageDownload.h"
#include "updates/PublishedFeed.h"
#include "updates/TestAuthority.h"

#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QTest>

#include <gtest/gtest.h>

#include <optional>

namespace quillmark {
namespace {

using namespace std::chrono_literals;
using Case = UpdateError::Case;
using test::PublishedFeed;
using test::TestServer;

class Check : public ::testing::Test
{
protected:
    Check() { m_network.setProxy(QNetworkProxy::NoProxy); }

    struct Result {
        std::optional<FeedAnswer> answer;
        std::optional<Case> failure;

        QString version() const
        {
            return answer && answer->update ? answer->update->version : QString();
        }
    };

    Result check(const QString &current = QStringLiteral("1.0"),
                 std::optional<QDateTime> newestSeen = std::nullopt)
    {
        FeedQuestion question;
        question.configuration = m_feed.configuration();
        question.currentVersion = current;
        question.system = {.os = QStringLiteral("linux"),
                           .systemVersion = QStringLiteral("6.1"),
                           .architecture = QStringLiteral("x86_64")};
        question.newestSeen = std::move(newestSeen);
        FeedCheck check(m_network, question,
                        {.bytes = largestAppcast, .window = 20s, .windowBytes = 1, .whole = 30s});
        Result result;
        QObject::connect(&check, &FeedCheck::answered,
                         [&](const FeedAnswer &answer) { result.answer = answer; });
        QObject::connect(&check, &FeedCheck::failed,
                         [&](const UpdateError &error) { result.failure = error.which(); });
        check.start();
        EXPECT_TRUE(QTest::qWaitFor([&] { return result.answer || result.failure; }, 20'000));
        return result;
    }

    const test::TestAuthority::Trust m_trust{test::TestAuthority::shared()};
    TestServer m_server;
    PublishedFeed m_feed{m_server};
    QNetworkAccessManager m_network;
};

TEST_F(Check, findsTheNewestVersion)
{
    m_feed.add(QStringLiteral("1.1"));
    m_feed.add(QStringLiteral("1.3"));
    m_feed.add(QStringLiteral("1.2"));
    const Result result = check();
    ASSERT_TRUE(result.answer);
    EXPECT_EQ(result.version(), QStringLiteral("1.3"));
    EXPECT_EQ(result.answer->feedDate, m_feed.date());
    EXPECT_EQ(result.answer->update->notes, QStringLiteral("What is new in 1.3"));
}

TEST_F(Check, newestVersionHasNothingAboveIt)
{
    m_feed.add(QStringLiteral("1.1"));
    for (const char *current : {"1.1", "1.1.0", "2.0"}) {
        const Result result = check(QString::fromLatin1(current));
        EXPECT_TRUE(result.answer && !result.answer->update) << current;
    }
}

TEST_F(Check, asksForTwoFilesOnly)
{
    m_feed.add(QStringLiteral("1.1"));
    check();
    EXPECT_EQ(m_server.requests().size(), 2);
    EXPECT_EQ(m_server.count(QStringLiteral("/appcast.xml")), 1);
    EXPECT_EQ(m_server.count(QStringLiteral("/appcast.xml.sig")), 1);
}

TEST_F(Check, signatureStandsBesideTheFeed)
{
    EXPECT_EQ(signatureAddress(QUrl(QStringLiteral("https://e.org/a%20b/c.xml?d=e"))),
              QUrl(QStringLiteral("https://e.org/a%20b/c.xml.sig?d=e")));
}

TEST_F(Check, unsignedFeedIsRefused)
{
    m_feed.add(QStringLiteral("1.1"));
    for (const int status : {404, 410}) {
        test::Answer missing;
        missing.status = status;
        m_server.answer(QStringLiteral("/appcast.xml.sig"), missing);
        EXPECT_EQ(check().failure, Case::feedUnsigned) << status;
    }
}

TEST_F(Check, serverInTroubleDoesNotMeanUnsigned)
{
    m_feed.add(QStringLiteral("1.1"));
    for (const int status : {403, 500, 503}) {
        test::Answer broken;
        broken.status = status;
        m_server.answer(QStringLiteral("/appcast.xml.sig"), broken);
        EXPECT_EQ(check().failure, Case::badStatus) << status;
    }
}

TEST_F(Check, packageAboveTheLimitIsRefused)
{
    AppcastItem item = m_feed.item(QStringLiteral("1.1"));
    item.packageBytes = largestPackage;
    m_feed.add(item);
    EXPECT_TRUE(check().answer);
    item.packageBytes = largestPackage + 1;
    item.version = QStringLiteral("1.2");
    m_feed.add(item);
    EXPECT_EQ(check().failure, Case::packageTooLarge);
}

TEST_F(Check, signatureThatIsNoneIsRefused)
{
    m_feed.add(QStringLiteral("1.1"));
    for (const QByteArray &text : {QByteArray(), QByteArray("<html>"), QByteArray(2000, 'A'),
                                   m_feed.signatureOf(m_feed.bytes()).chopped(4)}) {
        m_feed.publishSignature(text);
        EXPECT_EQ(check().failure, Case::feedSignatureUnreadable) << text.left(20).constData();
    }
}

TEST_F(Check, changedFeedIsRefused)
{
    m_feed.add(QStringLiteral("1.1"));
    const QByteArray signature = m_feed.signatureOf(m_feed.bytes());
    m_feed.publish(QByteArray(m_feed.bytes()).replace(">1.1<", ">9.1<"));
    m_feed.publishSignature(signature);
    EXPECT_EQ(check().failure, Case::feedForged);
}

TEST_F(Check, feedOfAnotherKeyIsRefused)
{
    m_feed.add(QStringLiteral("1.1"));
    TestServer elsewhere;
    PublishedFeed other(elsewhere);
    m_feed.publishSignature(other.signatureOf(m_feed.bytes()));
    EXPECT_EQ(check().failure, Case::feedForged);
}

TEST_F(Check, nothingOfAForgedFeedIsParsed)
{
    m_feed.publish("no XML at all");
    m_feed.publishSignature(m_feed.signatureOf("something else"));
    EXPECT_EQ(check().failure, Case::feedForged);
}

TEST_F(Check, malformedFeedIsRefused)
{
    for (const QByteArray &bytes :
         {QByteArray(), QByteArray("no XML"),
          QByteArray("<!DOCTYPE rss [<!ENTITY a 'b'>]><rss><channel>&a;</channel></rss>")}) {
        m_feed.publish(bytes);
        EXPECT_EQ(check().failure, Case::malformedFeed) << bytes.constData();
    }
}

TEST_F(Check, oversizedFeedIsRefused)
{
    m_feed.publish(QByteArray(largestAppcast + 1, ' '));
    EXPECT_EQ(check().failure, Case::tooLarge);
    EXPECT_EQ(m_server.requests().size(), 1);
}

TEST_F(Check, undatedFeedIsRefused)
{
    m_feed.publish("<rss><channel><item/></channel></rss>");
    EXPECT_EQ(check().failure, Case::feedUndated);
}

TEST_F(Check, replayedFeedIsRefused)
{
    m_feed.add(QStringLiteral("1.1"));
    EXPECT_EQ(check(QStringLiteral("1.0"), m_feed.date()).version(), QStringLiteral("1.1"));
    EXPECT_EQ(check(QStringLiteral("1.0"), m_feed.date().addSecs(1)).failure, Case::feedReplayed);
}

TEST_F(Check, packageWithoutSignatureIsRefused)
{
    AppcastItem item = m_feed.item(QStringLiteral("1.1"));
    item.packageSignature.clear();
    m_feed.add(item);
    EXPECT_EQ(check().failure, Case::packageUnsigned);
    EXPECT_TRUE(check(QStringLiteral("1.1")).answer) << "it is not what anybody wants";
}

TEST_F(Check, packageWithoutReadableSignatureIsRefused)
{
    AppcastItem item = m_feed.item(QStringLiteral("1.1"));
    item.packageSignature = QStringLiteral("MC0CFQCM");
    m_feed.add(item);
    EXPECT_EQ(check().failure, Case::packageSignatureUnreadable);
}

TEST_F(Check, fileThatIsNoPackageIsRefused)
{
    for (const char *name : {"/quillmark.desktop", "/run.sh", "/", "/.deb", "/a.deb/"}) {
        AppcastItem item = m_feed.item(QStringLiteral("1.1"));
        item.package.setPath(QString::fromLatin1(name));
        m_feed.add(item);
        EXPECT_EQ(check().failure, Case::packageUnusable) << name;
    }
}

} // namespace
} // namespace quillmark
