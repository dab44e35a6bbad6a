// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "faults/SystemCalls.h"
#include "ingest/IngestViewModel.h"
#include "support/Await.h"
#include "support/ImageFiles.h"
#include "support/Samples.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace quillmark::test {
namespace {

namespace fs = std::filesystem;
using ::testing::IsEmpty;
using ::testing::Not;

using Calls = std::vector<SystemCall>;
using FileIdentity = std::pair<dev_t, ino_t>;

FileIdentity identity(const fs::path &path)
{
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0) {
        throw std::runtime_error("nothing is at " + path.string());
    }
    return {status.st_dev, status.st_ino};
}

/// A trace up to the moment from which originals may be written to.
Calls beforeTheChild(const Calls &calls)
{
    const auto isStart = [](const SystemCall &call) { return call.function == "fork"; };
    return {calls.begin(), std::find_if(calls.begin(), calls.end(), isStart)};
}

/// Where in a trace the last successful call for which this holds stands, counted from 1; 0
/// where there is none.
template <typename Condition>
std::ptrdiff_t lastOf(const Calls &calls, Condition condition)
{
    const auto found =
        std::find_if(calls.rbegin(), calls.rend(), [&condition](const SystemCall &call) {
            return !call.failed && condition(call);
        });
    return std::distance(found, calls.rend());
}

std::ptrdiff_t lastSynchronisation(const Calls &calls, FileIdentity file)
{
    return lastOf(calls, [file](const SystemCall &call) {
        return call.function == "fsync" && call.file == file;
    });
}

/// The last call that gave a file the entry that it has in a folder.
std::ptrdiff_t lastNaming(const Calls &calls, FileIdentity file, FileIdentity folder)
{
    return lastOf(calls, [file, folder](const SystemCall &call) {
        return call.changes && call.file == file && call.folder == folder;
    });
}

/// Everything below a folder.
std::vector<fs::path> below(const fs::path &folder)
{
    std::vector<fs::path> entries;
    for (const auto &entry : fs::recursive_directory_iterator(folder)) {
        entries.push_back(entry.path());
    }
    return entries;
}

/// What of these copies a power cut after these calls might cost.
std::vector<std::string> atRisk(const Calls &calls, const std::vector<fs::path> &copies)
{
    std::vector<std::string> risks;
    for (const fs::path &copy : copies) {
        const FileIdentity file = identity(copy);
        const FileIdentity above = identity(copy.parent_path());
        const std::ptrdiff_t written = lastOf(calls, [file](const SystemCall &call) {
            return call.changes && call.file == file && call.folder == FileIdentity{};
        });
        const std::ptrdiff_t synchronised = lastSynchronisation(calls, file);
        const std::ptrdiff_t named = lastNaming(calls, file, above);
        if (fs::is_regular_file(copy) && written == 0) {
            risks.push_back(copy.native() + " was not seen being written");
        }
        if (synchronised <= written) {
            risks.push_back("the data of " + copy.native());
        }
        if (named == 0) {
            risks.push_back(copy.native() + " was not seen getting its name");
        }
        if (lastSynchronisation(calls, above) <= named) {
            risks.push_back("the entry of " + copy.native());
        }
    }
    return risks;
}

/// A roll, and the trace of a run over it with the real exiftool.
class Durability : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_picture.samples.assign(std::size_t{3} * 16 * 12, 30000);
        writeJpeg(m_roll / "01.jpg", m_picture);
        writeTiff(m_roll / "02.tif", m_picture);
        fs::create_directory(m_roll / "album.jpg");
        writeJpeg(m_roll / "album.jpg" / "03.jpg", m_picture);
        m_roll.write("_originals/01.jpg", "the backup of an earlier run");
        m_original = readFile(m_roll / "01.jpg");
        m_files = {m_roll / "01.jpg", m_roll / "02.tif", m_roll / "album.jpg"};
    }

    Calls run(BackupMode mode, std::vector<Fault> faults = {})
    {
        IngestViewModel session;
        session.setBackupMode(mode);
        session.setState(IngestViewModel::Ready{
            {.folder = m_roll.path(),
             .detection = {.file = m_roll.path(), .payload = fullPayload(), .raw = {}},
             .rollFiles = m_files,
             .backupMode = mode}});
        const WatchedCalls watched({{m_roll.path(), "roll"}}, std::move(faults));
        await(session.runIngest());
        EXPECT_TRUE(watched.faultsMet());
        m_isDone = std::holds_alternative<IngestViewModel::Done>(session.state());
        return watched.calls();
    }

    TempDir m_roll;
    RasterImage m_picture{.width = 16, .height = 12};
    std::string m_original;
    std::vector<fs::path> m_files;
    bool m_isDone = false; ///< the last run
};

TEST_F(Durability, backupsAreOnDiskBeforeTheFirstOriginalIsWrittenTo)
{
    const Calls calls = run(BackupMode::backupOriginals);
    EXPECT_THAT(beforeTheChild(calls), Not(IsEmpty()));
    EXPECT_LT(beforeTheChild(calls).size(), calls.size());
    EXPECT_TRUE(m_isDone);
    EXPECT_EQ(readFile(m_roll / "_originals" / "01.jpg"), m_original);
    EXPECT_NE(readFile(m_roll / "01.jpg"), m_original);
    const std::vector<fs::path> copies = below(m_roll / "_originals");
    EXPECT_EQ(copies.size(), 4U);
    EXPECT_THAT(atRisk(beforeTheChild(calls), copies), IsEmpty());
}

TEST_F(Durability, aNewFolderOfBackupsIsOnDiskToo)
{
    fs::remove_all(m_roll / "_originals");
    const Calls calls = run(BackupMode::backupOriginals);
    EXPECT_THAT(atRisk(beforeTheChild(calls), {m_roll / "_originals"}), IsEmpty());
}

TEST_F(Durability, anEarlierBackupIsReplacedByWhatIsOnDiskAlready)
{
    const Calls calls = run(BackupMode::backupOriginals);
    const FileIdentity file = identity(m_roll / "_originals" / "01.jpg");
    const FileIdentity folder = identity(m_roll / "_originals");
    EXPECT_GT(lastSynchronisation(calls, file), 0);
    EXPECT_LT(lastSynchronisation(calls, file), lastNaming(calls, file, folder));
}

TEST_F(Durability, backupsAreOnDiskHoweverTheyWereMade)
{
    const Fault notCloned{"ioctl(FICLONE)", "", Fault::always, EOPNOTSUPP};
    const Fault notByKernel{"copy_file_range", "", Fault::always, ENOSYS};
    const Fault inTwoSteps{"renameat2", "", Fault::always, EINVAL};
    for (const std::vector<Fault> &faults :
         {std::vector{notCloned}, {notCloned, notByKernel}, {inTwoSteps}}) {
        // The second time, each takes the place of a backup.
        for (int time = 0; time < 2; ++time) {
            const Calls calls = beforeTheChild(run(BackupMode::backupOriginals, faults));
            EXPECT_TRUE(m_isDone);
            EXPECT_THAT(atRisk(calls, below(m_roll / "_originals")), IsEmpty())
                << faults.back().function;
            for (const Fault &fault : faults) {
                EXPECT_TRUE(std::any_of(calls.begin(), calls.end(), [&](const SystemCall &call) {
                    return call.function == fault.function && call.failed;
                })) << fault.function;
            }
        }
    }
}

TEST_F(Durability, manyBackupsAreOnDiskToo)
{
    constexpr int frames = 200;
    for (int i = 0; i < frames; ++i) {
        m_files.push_back(m_roll / ("frame " + std::to_string(i) + ".jpg"));
        writeJpeg(m_files.back(), m_picture);
    }
    const Calls calls = beforeTheChild(run(BackupMode::backupOriginals));
    const std::vector<fs::path> copies = below(m_roll / "_originals");
    EXPECT_EQ(copies.size(), frames + 4U);
    EXPECT_THAT(atRisk(calls, copies), IsEmpty());
}

TEST_F(Durability, everySynchronisationCounts)
{
    fs::remove_all(m_roll / "_originals");
    const Calls calls = beforeTheChild(run(BackupMode::backupOriginals));
    std::vector<fs::path> copies = below(m_roll / "_originals");
    copies.push_back(m_roll / "_originals");
    std::size_t count = 0;
    for (std::size_t i = 0; i < calls.size(); ++i) {
        if (calls[i].function == "fsync") {
            Calls without = calls;
            without.erase(without.begin() + static_cast<std::ptrdiff_t>(i));
            EXPECT_THAT(atRisk(without, copies), Not(IsEmpty())) << calls[i].subject;
            ++count;
        }
    }
    // Of three files, the folder among them, that of the copies, and the roll.
    EXPECT_EQ(count, 6U);
}

TEST_F(Durability, noOriginalIsWrittenToWhereABackupCannotBePutOnDisk)
{
    const auto synchronisations = [](const Calls &calls) {
        std::vector<Fault> faults;
        for (const SystemCall &call : calls) {
            if (call.function == "fsync") {
                faults.push_back({"fsync", call.subject, 1, EIO});
            }
        }
        return faults;
    };
    // An earlier backup is replaced in another way than a first one is made.
    for (const bool again : {false, true}) {
        const auto begin = [&] {
            fs::remove_all(m_roll / "_originals");
            if (again) {
                run(BackupMode::backupOriginals);
            }
        };
        begin();
        const auto faults = synchronisations(beforeTheChild(run(BackupMode::backupOriginals)));
        EXPECT_GE(faults.size(), 5U);
        for (const Fault &fault : faults) {
            begin();
            const std::string before = readFile(m_roll / "01.jpg");
            const Calls calls = run(BackupMode::backupOriginals, {fault});
            EXPECT_FALSE(m_isDone) << fault.subject;
            EXPECT_EQ(beforeTheChild(calls).size(), calls.size()) << fault.subject;
            EXPECT_TRUE(readFile(m_roll / "01.jpg") == before) << fault.subject;
        }
    }
}

TEST_F(Durability, originalsAreOnlyReadByThisProcess)
{
    for (const BackupMode mode :
         {BackupMode::backupOriginals, BackupMode::writeCopies, BackupMode::none}) {
        for (const SystemCall &call : run(mode)) {
            const bool concernsOriginal = call.subject.starts_with("roll/01") ||
                                          call.subject.starts_with("roll/02") ||
                                          call.subject.starts_with("roll/album");
            EXPECT_FALSE(call.changes && concernsOriginal) << call.function << call.subject;
        }
    }
}

} // namespace
} // namespace quillmark::test
