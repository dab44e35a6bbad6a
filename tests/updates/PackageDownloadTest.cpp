// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/PackageDownload.h"

#include "app/updates/PackageName.h"
#include "support/TempDir.h"
#include "updates/PublishedFeed.h"
#include "updates/TestAuthority.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QTest>

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdlib>
#include <optional>

namespace quillmark {
namespace {

using namespace std::chrono_literals;
using Case = UpdateError::Case;
using std::filesystem::path;
using test::Answer;
using test::PublishedFeed;
using test::TestServer;

const QString version = QStringLiteral("2.0");

class Download : public ::testing::Test
{
protected:
    Download()
    {
        m_network.setProxy(QNetworkProxy::NoProxy);
        ::setenv("XDG_CACHE_HOME", m_cache.path().c_str(), 1);
    }
    ~Download() override { ::unsetenv("XDG_CACHE_HOME"); }
    Q_DISABLE_COPY_MOVE(Download)

    /// The download, run to its end.
    std::unique_ptr<PackageDownload> run(const AppcastItem &item)
    {
        m_failure.reset();
        m_file.clear();
        auto download = std::make_unique<PackageDownload>(
            m_network, item, m_feed.configuration().publicKey,
            FetchLimits{.bytes = 0, .window = 20s, .windowBytes = 1, .whole = 30s});
        QObject::connect(download.get(), &PackageDownload::verified,
                         [&](const QString &file) { m_file = file.toStdString(); });
        QObject::connect(download.get(), &PackageDownload::failed,
                         [&](const UpdateError &error) { m_failure = error.which(); });
        QObject::connect(download.get(), &PackageDownload::progressed,
                         [&](qint64 received, qint64 expected) {
                             m_received = received;
                             m_expected = expected;
                         });
        download->start();
        EXPECT_TRUE(QTest::qWaitFor([&] { return m_failure || !m_file.empty(); }, 20'000));
        return download;
    }
    Case refusal(const AppcastItem &item)
    {
        const auto download = run(item);
        EXPECT_TRUE(nothingIsLeft());
        EXPECT_TRUE(m_file.empty());
        return m_failure.value();
    }
    bool nothingIsLeft() const
    {
        const path place = m_cache / "quillmark/updates";
        return !std::filesystem::exists(place) || std::filesystem::is_empty(place);
    }

    const test::TempDir m_cache;
    const test::TestAuthority::Trust m_trust{test::TestAuthority::shared()};
    TestServer m_server;
    PublishedFeed m_feed{m_server};
    QNetworkAccessManager m_network;
    std::optional<Case> m_failure;
    path m_file;
    qint64 m_received = 0;
    qint64 m_expected = 0;
};

TEST_F(Download, packageOfThePublisherIsKeptWhereOnlyTheUserComes)
{
    const QByteArray package(3'000'000, 'p');
    auto download = run(m_feed.item(version, package));
    ASSERT_FALSE(m_file.empty());
    EXPECT_EQ(m_file.filename(), "quillmark_2.0.deb");
    EXPECT_TRUE(test::readFile(m_file) == package.toStdString());
    EXPECT_EQ(m_received, package.size());
    EXPECT_EQ(m_expected, package.size());
    struct stat status {};
    ASSERT_EQ(::stat(m_file.parent_path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
    ASSERT_EQ(::stat(m_file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0111U, 0U) << "nothing that could be run";
    download->keep();
    download.reset();
    EXPECT_TRUE(std::filesystem::exists(m_file));
}

TEST_F(Download, goesWithItsFolderUnlessThatIsKept)
{
    auto download = run(m_feed.item(version));
    ASSERT_TRUE(std::filesystem::exists(m_file));
    download.reset();
    EXPECT_TRUE(nothingIsLeft());
}

TEST_F(Download, emptyPackageCanBeSigned)
{
    AppcastItem item = m_feed.item(version, QByteArray());
    run(item);
    EXPECT_FALSE(m_failure);
}

TEST_F(Download, swappedPackageIsRefused)
{
    const AppcastItem item = m_feed.item(version, "the package");
    m_server.answer(PublishedFeed::packagePath(version), QByteArray("a swapped  ").left(11));
    EXPECT_EQ(refusal(item), Case::packageForged);
}

TEST_F(Download, packageOfAnotherKeyIsRefused)
{
    AppcastItem item = m_feed.item(version, "the package");
    TestServer elsewhere;
    item.packageSignature =
        QString::fromLatin1(PublishedFeed(elsewhere).signatureOf("the package"));
    EXPECT_EQ(refusal(item), Case::packageForged);
}

TEST_F(Download, signatureThatIsNoneIsRefused)
{
    AppcastItem item = m_feed.item(version);
    item.packageSignature = QStringLiteral("AAAA");
    EXPECT_EQ(refusal(item), Case::packageSignatureUnreadable);
}

TEST_F(Download, packageOfAnotherSizeIsRefused)
{
    AppcastItem item = m_feed.item(version, "the package");
    for (const qint64 bytes : {5, 10, 12, 1'000'000}) {
        item.packageBytes = bytes;
        EXPECT_EQ(refusal(item), Case::packageSizeWrong) << bytes;
    }
}

TEST_F(Download, packageAboveTheLimitIsRefusedBeforeItIsFetched)
{
    AppcastItem item = m_feed.item(version, "the package");
    item.packageBytes = largestPackage + 1;
    EXPECT_EQ(refusal(item), Case::packageTooLarge);
    EXPECT_TRUE(m_server.requests().isEmpty());

    // Where only the server says how large it is.
    item.packageBytes = 0;
    Answer answer;
    answer.body = "the p";
    answer.announced = largestPackage + 1;
    answer.manner = Answer::Manner::Stall;
    m_server.answer(PublishedFeed::packagePath(version), answer);
    EXPECT_EQ(refusal(item), Case::packageTooLarge);
}

TEST_F(Download, packageThatBreaksOffIsRefused)
{
    const AppcastItem item = m_feed.item(version, "the package");
    Answer answer;
    answer.body = "the p";
    answer.announced = 11;
    m_server.answer(PublishedFeed::packagePath(version), answer);
    EXPECT_EQ(refusal(item), Case::truncated);
}

TEST_F(Download, packageThatIsNotThereIsRefused)
{
    AppcastItem item = m_feed.item(version);
    item.package = m_server.address(QStringLiteral("/missing.deb"));
    EXPECT_EQ(refusal(item), Case::badStatus);
    item.package = m_server.address(QStringLiteral("/missing.sh"));
    EXPECT_EQ(refusal(item), Case::packageUnusable);
    item.package = QUrl(QStringLiteral("http://example.org/q.deb"));
    EXPECT_EQ(refusal(item), Case::insecureAddress);
}

TEST_F(Download, redirectThatLeavesHttpsIsRefused)
{
    TestServer plain(TestServer::Kind::Plain);
    plain.answer(QStringLiteral("/q.deb"), QByteArray("a package"));
    const AppcastItem item = m_feed.item(version);
    m_server.redirect(PublishedFeed::packagePath(version),
                      plain.address(QStringLiteral("/q.deb")).toEncoded());
    EXPECT_EQ(refusal(item), Case::insecureRedirect);
}

TEST_F(Download, placeThatCannotBeWrittenToIsSaid)
{
    m_cache.write("quillmark", "a file where the folder should be");
    run(m_feed.item(version));
    EXPECT_EQ(m_failure, Case::cannotStore);
}

TEST_F(Download, goneInTheMiddleItLeavesNothing)
{
    const AppcastItem item = m_feed.item(version, "the package");
    Answer answer;
    answer.body = "the p";
    answer.announced = 11;
    answer.manner = Answer::Manner::Stall;
    m_server.answer(PublishedFeed::packagePath(version), answer);
    auto download = std::make_unique<PackageDownload>(
        m_network, item, m_feed.configuration().publicKey,
        FetchLimits{.bytes = 0, .window = 20s, .windowBytes = 1, .whole = 30s});
    bool some = false;
    QObject::connect(download.get(), &PackageDownload::progressed, [&] { some = true; });
    download->start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return some; }, 20'000));
    EXPECT_FALSE(nothingIsLeft());
    download.reset();
    EXPECT_TRUE(nothingIsLeft());
}

TEST_F(Download, goneWhileItVerifiesItLeavesNothing)
{
    auto download = std::make_unique<PackageDownload>(
        m_network, m_feed.item(version, QByteArray(5'000'000, 'p')),
        m_feed.configuration().publicKey,
        FetchLimits{.bytes = 0, .window = 20s, .windowBytes = 1, .whole = 30s});
    bool fetched = false;
    QObject::connect(download.get(), &PackageDownload::fetched, [&] { fetched = true; });
    download->start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return fetched; }, 20'000));
    download.reset();
    EXPECT_TRUE(nothingIsLeft());
    QCoreApplication::processEvents();
}

TEST_F(Download, leftoversOfADayAgoAreRemoved)
{
    const path old = m_cache.write("quillmark/updates/old/q.deb", "old").parent_path();
    const path young = m_cache.write("quillmark/updates/young/q.deb", "young").parent_path();
    std::filesystem::last_write_time(old, std::filesystem::file_time_type::clock::now() - 25h);
    run(m_feed.item(version));
    EXPECT_FALSE(std::filesystem::exists(old));
    EXPECT_TRUE(std::filesystem::exists(young));
}

TEST(PackageName, isPlainAndThatOfAPackage)
{
    const auto name = [](const char *address) {
        return packageFileName(QUrl(QString::fromUtf8(address))).value_or(QString());
    };
    EXPECT_EQ(name("https://e.org/a/quillmark_1.2~b1+x_amd64.deb?x=y.sh"),
              QStringLiteral("quillmark_1.2~b1+x_amd64.deb"));
    EXPECT_EQ(name("https://e.org/q.pkg.tar.zst"), QStringLiteral("q.pkg.tar.zst"));
    EXPECT_EQ(name("https://e.org/Gr%C3%BCn%20%22%24(rm)%00.rpm"),
              QStringLiteral("Gr-n----rm--.rpm"));
    EXPECT_EQ(name("https://e.org/..%2f..%2fq.deb"), QStringLiteral("q.deb"));
    EXPECT_EQ(name("https://e.org/.hidden.deb"), QStringLiteral("-hidden.deb"));
    EXPECT_EQ(name("https://e.org/-rf.deb"), QStringLiteral("-rf.deb"));
    for (const char *address :
         {"https://e.org/", "https://e.org/q", "https://e.org/q.deb/", "https://e.org/.deb",
          "https://e.org/q.deb.sh", "https://e.org/q.desktop", "https://e.org/q.AppImage"}) {
        EXPECT_EQ(name(address), QString()) << address;
    }
    EXPECT_EQ(name(("https://e.org/" + std::string(5000, 'a') + ".deb").c_str()).size(), 100);
}

} // namespace
} // namespace quillmark
