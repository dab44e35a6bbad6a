// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// Rolls of twenty thousand files.

#include "ingest/SessionFixture.h"

#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <iterator>
#include <utility>

namespace quillmark::test {
namespace {

using ::testing::HasSubstr;

constexpr int rollSize = 20'000;
constexpr int subfolders = 2'000;

// Each access is looked at, so that only a loop that stands still is to be told from others.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::chrono::milliseconds longestTurn{1000};
#else
constexpr std::chrono::milliseconds longestTurn{100};
#endif

/// A number with leading zeros, so that names sort as they count.
std::string padded(int number)
{
    const std::string digits = std::to_string(number);
    return std::string(6 - digits.size(), '0') + digits;
}

/// Watches the event loop of the thread that makes it.
class LoopWatch
{
public:
    LoopWatch() : m_before(processorTime())
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { turn(); });
        m_timer.start(0);
    }

    /// That it turned all the time. What it did between two turns is told in processor time:
    /// what else the machine does is none of its business.
    void expectAlive() const
    {
        EXPECT_GT(m_turns, 20);
        EXPECT_LT(m_longest, longestTurn);
    }

private:
    static std::chrono::nanoseconds processorTime()
    {
        timespec time{};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    }
    void turn()
    {
        const auto now = processorTime();
        m_longest = std::max(m_longest, now - std::exchange(m_before, now));
        ++m_turns;
    }

    QTimer m_timer;
    std::chrono::nanoseconds m_before;
    std::chrono::nanoseconds m_longest{0};
    int m_turns = 0;
};

class LargeRoll : public SessionTest
{
protected:
    /// In memory, where there is such a place: how long a disk takes for twenty thousand files
    /// is another matter.
    static void SetUpTestSuite()
    {
        SessionTest::SetUpTestSuite();
        usualPlace = qgetenv("TMPDIR");
        if (::access("/dev/shm", W_OK) == 0) {
            qputenv("TMPDIR", "/dev/shm");
        }
    }
    static void TearDownTestSuite()
    {
        usualPlace.isEmpty() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", usualPlace);
    }

    /// Twenty thousand names of one empty file, in one folder or in many.
    void fill(bool inSubfolders)
    {
        const fs::path file = roll.write("empty", "");
        for (int i = 1; i < rollSize; ++i) {
            fs::path folder = roll.path();
            if (inSubfolders) {
                folder /= padded(i % subfolders);
                if (i <= subfolders) {
                    fs::create_directory(folder);
                }
            }
            expected.push_back(folder / (padded(i) + ".jpg"));
            fs::create_hard_link(file, expected.back());
        }
    }

    /// The slate, under a name that is the last, or the first.
    fs::path addSlate(const char *name)
    {
        expected.push_back(writeFrame(roll / name, {slatePayloadToJson(fullPayload())}));
        return expected.back();
    }

    void expectPlanned(const fs::path &slate)
    {
        std::sort(expected.begin(), expected.end(),
                  [](const fs::path &a, const fs::path &b) { return a.native() < b.native(); });
        const IngestPlan plan = in<Session::Ready>(session).plan;
        EXPECT_EQ(plan.detection.file, slate);
        ASSERT_EQ(plan.rollFiles.size(), rollSize);
        EXPECT_TRUE(plan.rollFiles == expected); // too many to be printed
    }

    std::vector<fs::path> expected;
    inline static QByteArray usualPlace;
};

TEST_F(LargeRoll, inOneFolderIsPlannedWholeWhileTheWindowStaysAlive)
{
    fill(false);
    const fs::path slate = addSlate("last.jpg");
    const LoopWatch loop;
    scan();
    loop.expectAlive();
    expectPlanned(slate);
}

TEST_F(LargeRoll, inTwoThousandSubfoldersIsPlannedWholeWhileTheWindowStaysAlive)
{
    fill(true);
    const fs::path slate = addSlate("000000.jpg");
    session.setRecursive(true);
    const LoopWatch loop;
    scan();
    loop.expectAlive();
    expectPlanned(slate);
}

TEST_F(LargeRoll, withoutASlateIsTriedToItsEnd)
{
    fill(true);
    session.setRecursive(true);
    const LoopWatch loop;
    scan();
    loop.expectAlive();
    EXPECT_EQ(in<Session::DetectionFailed>(session).triedCount, rollSize - 1);
}

TEST_F(LargeRoll, isWrittenByOneCallWhileTheWindowStaysAlive)
{
    fill(false);
    addSlate("000000.jpg");
    const TempDir log;
    standIn("echo $# >> '" + (log / "calls").string() + "'");
    session.setBackupMode(BackupMode::none);
    scan();
    const LoopWatch loop;
    await(session.runIngest());
    loop.expectAlive();
    EXPECT_EQ(in<Session::Done>(session).outcome.mutated.size(), rollSize);

    const auto others = Exiftool::tagArguments(fullPayload(), ownGeneratorVersion.toString());
    EXPECT_EQ(readFile(log / "calls"), std::to_string(6 + others.size() + rollSize) + "\n");
}

// Under a sanitizer it takes a minute and more; smaller rolls are copied there.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST_F(LargeRoll, inTwoThousandSubfoldersIsCopiedAndWritten)
{
    fill(true);
    const fs::path slate = addSlate("000000.jpg");
    const std::string content = readFile(slate);
    standIn("exit 0");
    session.setRecursive(true);
    session.setBackupMode(BackupMode::backupOriginals);
    scan();
    await(session.runIngest());
    EXPECT_EQ(in<Session::Done>(session).outcome.mutated.size(), rollSize);
    EXPECT_EQ(readFile(roll / "_originals" / "000000.jpg"), content);
    EXPECT_EQ(std::distance(fs::directory_iterator(roll / "_originals"), {}), rollSize);
}
#endif

TEST_F(LargeRoll, whosePathsAreTooLongTogetherIsAnErrorThatSaysSo)
{
    // Some 300 bytes each: 6 MB is what a program can be given at all.
    const fs::path deep = roll / std::string(250, 'd');
    fs::create_directory(deep);
    const fs::path slate = writeFrame(deep / "000000.jpg", {slatePayloadToJson(fullPayload())});
    const std::string content = readFile(slate);
    std::vector<fs::path> files{slate};
    for (int i = 1; i < rollSize; ++i) {
        files.push_back(deep / (padded(i) + std::string(40, 'n') + ".jpg"));
        fs::create_hard_link(slate, files.back());
    }
    session.setBackupMode(BackupMode::none);
    await(session.scan(deep));
    EXPECT_EQ(in<Session::Ready>(session).plan.rollFiles.size(), rollSize);
    await(session.runIngest());
    EXPECT_THAT(in<Session::Error>(session).text.toStdString(),
                HasSubstr("could not be started, because the names of the files or the texts are "
                          "too long together"));
    EXPECT_EQ(readFile(slate), content);
    EXPECT_FALSE(fs::exists(deep / "_originals"));
}

} // namespace
} // namespace quillmark::test
