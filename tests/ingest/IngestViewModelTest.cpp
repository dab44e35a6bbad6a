// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "ingest/IngestViewModel.h"

#include "embedding/Exiftool.h"
#include "manual/LastUsedPayloadStore.h"
#include "payload/SlatePayloadJson.h"
#include "support/Await.h"
#include "support/Frames.h"
#include "support/Printers.h"
#include "support/Samples.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QProcess>

#include <memory>
#include <stdexcept>
#include <string>

namespace quillmark {
namespace {

namespace fs = std::filesystem;
using test::await;
using test::readFile;
using test::TempDir;
using test::writeFrame;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using Session = IngestViewModel;

/// What the session's state carries, if it is of that case; the test fails otherwise.
template <typename Case>
Case in(const Session &session)
{
    const auto *const state = std::get_if<Case>(&session.state());
    if (state == nullptr) {
        const auto *const error = std::get_if<Session::Error>(&session.state());
        throw std::runtime_error("the session is in another state " +
                                 (error ? error->text.toStdString() : std::string()));
    }
    return *state;
}

QString tagOf(const fs::path &file, const QString &tag)
{
    QProcess exiftool;
    exiftool.start(QStringLiteral("/usr/bin/exiftool"),
                   {QStringLiteral("-config"),
                    QString::fromStdString(Exiftool::configURL()->string()), QStringLiteral("-s3"),
                    QLatin1Char('-') + tag, QString::fromStdString(file.string())});
    exiftool.waitForFinished();
    return QString::fromUtf8(exiftool.readAllStandardOutput()).trimmed();
}

class IngestViewModelTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        static const TempDir settings;
        ::setenv("XDG_CONFIG_HOME", settings.path().c_str(), 1);
    }
    void SetUp() override { fs::remove_all(applicationFolder()); }
    void TearDown() override { fs::remove_all(applicationFolder()); }

    /// Where an installed program of this executable's place has its resources.
    static fs::path applicationFolder()
    {
        return fs::read_symlink("/proc/self/exe").parent_path().parent_path() / "share" /
               "quillmark";
    }

    /// Has the session run a script in place of exiftool.
    static void standIn(const std::string &script)
    {
        const fs::path configuration = *Exiftool::configURL();
        const fs::path bundle = applicationFolder() / "Quillmark_Quillmark.bundle";
        fs::create_directories(bundle / "exiftool");
        fs::copy_file(configuration, bundle / "quillmark.config");
        std::ofstream(bundle / "exiftool" / "exiftool") << "#!/bin/sh\n" << script << '\n';
        fs::permissions(bundle / "exiftool" / "exiftool", fs::perms::owner_all);
    }

    /// A roll of three frames, the slate second.
    void fillRoll() const
    {
        writeFrame(roll / "01.jpg");
        writeFrame(roll / "02.jpg", {slatePayloadToJson(test::fullPayload())});
        writeFrame(roll / "03.tif");
    }

    void scan() { await(session.scan(roll.path())); }

    TempDir roll;
    Session session;
};

TEST_F(IngestViewModelTest, startsIdleWithBackupsAndWithoutSubfolders)
{
    EXPECT_NO_THROW(in<Session::Idle>(session));
    EXPECT_EQ(session.backupMode(), BackupMode::backupOriginals);
    EXPECT_FALSE(session.recursive());
}

TEST_F(IngestViewModelTest, scanFindsTheSlateAndPlansTheRoll)
{
    fillRoll();
    QStringList folders;
    QObject::connect(&session, &Session::stateChanged, [&] {
        if (const auto *scanning = std::get_if<Session::Scanning>(&session.state())) {
            folders.append(QString::fromStdString(scanning->folder.string()));
        }
    });
    scan();
    EXPECT_EQ(folders, QStringList(QString::fromStdString(roll.path().string())));
    const IngestPlan plan = in<Session::Ready>(session).plan;
    EXPECT_EQ(plan.folder, roll.path());
    EXPECT_EQ(plan.detection.file, roll / "02.jpg");
    EXPECT_EQ(plan.detection.payload, test::fullPayload());
    EXPECT_THAT(plan.rollFiles, ElementsAre(roll / "01.jpg", roll / "02.jpg", roll / "03.tif"));
    EXPECT_EQ(plan.backupMode, BackupMode::backupOriginals);
}

TEST_F(IngestViewModelTest, changesDuringAScanDoNotAffectItsPlan)
{
    fillRoll();
    fs::create_directory(roll / "sub");
    writeFrame(roll / "sub" / "04.jpg");
    QCoro::Task<> scanning = session.scan(roll.path());
    session.setBackupMode(BackupMode::none);
    session.setRecursive(true);
    await(std::move(scanning));
    EXPECT_EQ(in<Session::Ready>(session).plan.backupMode, BackupMode::backupOriginals);
    EXPECT_THAT(in<Session::Ready>(session).plan.rollFiles, SizeIs(3));
}

TEST_F(IngestViewModelTest, changesAreAnnouncedBeforeAndAfter)
{
    QStringList seen;
    QObject::connect(&session, &Session::backupModeWillChange,
                     [&] { seen += rawValue(session.backupMode()); });
    QObject::connect(&session, &Session::backupModeChanged,
                     [&] { seen += rawValue(session.backupMode()); });
    session.setBackupMode(BackupMode::none);
    session.setBackupMode(BackupMode::none);
    EXPECT_EQ(seen, QStringList({QStringLiteral("backup-originals"), QStringLiteral("none")}));

    int idleBefore = 0;
    QObject::connect(&session, &Session::stateWillChange,
                     [&] { idleBefore += std::holds_alternative<Session::Idle>(session.state()); });
    session.setState(Session::Error{QStringLiteral("x")});
    EXPECT_EQ(idleBefore, 1);
}

TEST_F(IngestViewModelTest, noSlateLeadsToTheFailedDetectionWithItsCount)
{
    writeFrame(roll / "01.jpg");
    roll.write("02.jpg", "corrupt");
    scan();
    EXPECT_EQ(in<Session::DetectionFailed>(session).folder, roll.path());
    EXPECT_EQ(in<Session::DetectionFailed>(session).triedCount, 2);
}

TEST_F(IngestViewModelTest, noImagesIsAnError)
{
    const QString text = QStringLiteral("Folder contains no JPG or TIFF images.");
    scan();
    EXPECT_EQ(in<Session::Error>(session).text, text);
    await(session.scan(roll / "gone"));
    EXPECT_EQ(in<Session::Error>(session).text, text);
    await(session.scan(roll.write("dropped.jpg", "a file")));
    EXPECT_EQ(in<Session::Error>(session).text, text);
}

TEST_F(IngestViewModelTest, retryTriesThePickedFrame)
{
    writeFrame(roll / "01.jpg");
    const TempDir elsewhere;
    const fs::path slate =
        writeFrame(elsewhere / "slate.jpg", {slatePayloadToJson(test::fullPayload())});
    scan();
    session.setBackupMode(BackupMode::none);
    await(session.retryWithSlate(slate));
    const IngestPlan plan = in<Session::Ready>(session).plan;
    EXPECT_EQ(plan.detection.file, slate);
    EXPECT_THAT(plan.rollFiles, ElementsAre(roll / "01.jpg"));
    EXPECT_EQ(plan.backupMode, BackupMode::none);
}

TEST_F(IngestViewModelTest, retryWithoutASlateLeadsToManualEntryWithThatFrame)
{
    for (const fs::path &picked : {writeFrame(roll / "01.jpg"), roll / "gone.jpg"}) {
        session.setState(Session::DetectionFailed{roll.path(), 1});
        await(session.retryWithSlate(picked));
        EXPECT_EQ(in<Session::ManualEntry>(session).folder, roll.path());
        EXPECT_EQ(in<Session::ManualEntry>(session).slateImage, picked);
    }
}

TEST_F(IngestViewModelTest, retryPlansWithoutFilesWhereTheFolderIsGone)
{
    const fs::path slate =
        writeFrame(roll / "slate.jpg", {slatePayloadToJson(test::fullPayload())});
    session.setState(Session::DetectionFailed{roll / "gone", 1});
    await(session.retryWithSlate(slate));
    EXPECT_THAT(in<Session::Ready>(session).plan.rollFiles, IsEmpty());
}

TEST_F(IngestViewModelTest, operationsDoNothingInOtherStates)
{
    const fs::path frame = writeFrame(roll / "01.jpg");
    const std::string before = readFile(frame);
    const Session::State states[] = {
        Session::Idle{}, Session::Scanning{roll.path()},      Session::Writing{},
        Session::Done{}, Session::Error{QStringLiteral("x")},
    };
    for (const Session::State &state : states) {
        session.setState(state);
        await(session.retryWithSlate(frame));
        session.enterManually(frame);
        await(session.runIngest());
        await(session.submitManual(test::minimalPayload()));
        EXPECT_EQ(session.state().index(), state.index());
    }
    session.setState(Session::ManualEntry{roll.path(), {}});
    await(session.retryWithSlate(frame));
    await(session.runIngest());
    EXPECT_NO_THROW(in<Session::ManualEntry>(session));
    session.setState(Session::DetectionFailed{roll.path(), 1});
    await(session.submitManual(test::minimalPayload()));
    await(session.runIngest());
    EXPECT_NO_THROW(in<Session::DetectionFailed>(session));
    EXPECT_EQ(readFile(frame), before);
    EXPECT_FALSE(fs::exists(roll / "_originals"));
}

TEST_F(IngestViewModelTest, runBacksUpAndTagsTheRoll)
{
    fillRoll();
    scan();
    std::vector<std::string> originals;
    for (const char *name : {"01.jpg", "02.jpg", "03.tif"}) {
        originals.push_back(readFile(roll / name));
    }
    await(session.runIngest());
    const IngestOutcome outcome = in<Session::Done>(session).outcome;
    EXPECT_EQ(outcome.mutated, outcome.plan.rollFiles);
    ASSERT_THAT(outcome.backups, SizeIs(3));
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(readFile(outcome.backups[i]), originals[i]);
        EXPECT_EQ(tagOf(outcome.mutated[i], QStringLiteral("EXIF:Make")),
                  QStringLiteral("Kestrel"));
        EXPECT_EQ(tagOf(outcome.mutated[i], QStringLiteral("XMP-quillmark:GeneratorVersion")),
                  QStringLiteral("quillmark-macos@0.0.0"));
        EXPECT_EQ(tagOf(outcome.mutated[i], QStringLiteral("IPTC:City")),
                  *test::fullPayload().location);
    }
}

TEST_F(IngestViewModelTest, runUsesTheBackupModeOfItsMoment)
{
    fillRoll();
    session.setBackupMode(BackupMode::none);
    scan();
    session.setBackupMode(BackupMode::writeCopies);
    const std::string original = readFile(roll / "01.jpg");
    await(session.runIngest());
    const IngestOutcome outcome = in<Session::Done>(session).outcome;
    EXPECT_EQ(outcome.plan.backupMode, BackupMode::writeCopies);
    EXPECT_EQ(outcome.mutated.front(), roll / "_tagged" / "01.jpg");
    EXPECT_THAT(outcome.backups, IsEmpty());
    EXPECT_EQ(readFile(roll / "01.jpg"), original);
    EXPECT_EQ(tagOf(roll / "_tagged" / "01.jpg", QStringLiteral("EXIF:Model")),
              QStringLiteral("K2"));
}

TEST_F(IngestViewModelTest, runInPlaceMakesNoFolder)
{
    fillRoll();
    session.setBackupMode(BackupMode::none);
    scan();
    await(session.runIngest());
    EXPECT_EQ(in<Session::Done>(session).outcome.mutated,
              in<Session::Done>(session).outcome.plan.rollFiles);
    EXPECT_FALSE(fs::exists(roll / "_originals"));
    EXPECT_FALSE(fs::exists(roll / "_tagged"));
}

TEST_F(IngestViewModelTest, aPlanWithoutFilesCanBeRun)
{
    session.setState(Session::Ready{{roll.path(), {}, {}, BackupMode::none}});
    await(session.runIngest());
    EXPECT_THAT(in<Session::Done>(session).outcome.mutated, IsEmpty());
    EXPECT_TRUE(fs::is_directory(roll / "_originals"));
}

TEST_F(IngestViewModelTest, manualPayloadIsWrittenAndRemembered)
{
    const fs::path frame = writeFrame(roll / "caf\xE9.jpg");
    session.setState(Session::ManualEntry{roll.path(), {}});
    SlatePayload payload = test::minimalPayload();
    payload.notes = QStringLiteral("typed");
    await(session.submitManual(payload));
    const IngestPlan plan = in<Session::Done>(session).outcome.plan;
    EXPECT_EQ(plan.detection.file, roll.path());
    EXPECT_EQ(plan.detection.raw, QString());
    EXPECT_THAT(plan.rollFiles, ElementsAre(frame));
    EXPECT_EQ(LastUsedPayloadStore::load(), payload);
    EXPECT_TRUE(fs::exists(roll / "_originals" / "caf\xE9.jpg"));
}

TEST_F(IngestViewModelTest, manualPlanNamesThePickedFrame)
{
    const fs::path frame = writeFrame(roll / "01.jpg");
    session.setState(Session::ManualEntry{roll.path(), frame});
    await(session.submitManual(test::minimalPayload()));
    EXPECT_EQ(in<Session::Done>(session).outcome.plan.detection.file, frame);
}

TEST_F(IngestViewModelTest, manualPayloadIsRememberedThoughTheRunFails)
{
    writeFrame(roll / "01.jpg");
    standIn("echo broken >&2; exit 3");
    session.setState(Session::ManualEntry{roll.path(), {}});
    SlatePayload payload = test::minimalPayload();
    payload.notes = QStringLiteral("kept");
    await(session.submitManual(payload));
    EXPECT_EQ(in<Session::Error>(session).text,
              QStringLiteral("exiftool exited with code 3\n\nbroken\n"));
    EXPECT_EQ(LastUsedPayloadStore::load(), payload);
}

TEST_F(IngestViewModelTest, manualPayloadForAVanishedFolderIsAnErrorAndNotRemembered)
{
    LastUsedPayloadStore::save(test::fullPayload());
    session.setState(Session::ManualEntry{roll / "gone", {}});
    await(session.submitManual(test::minimalPayload()));
    EXPECT_THAT(in<Session::Error>(session).text.toStdString(), HasSubstr("gone"));
    EXPECT_EQ(LastUsedPayloadStore::load(), test::fullPayload());
    EXPECT_FALSE(fs::exists(roll / "gone"));
}

TEST_F(IngestViewModelTest, aFormSubmittedTwiceRunsOnce)
{
    writeFrame(roll / "01.jpg");
    const TempDir log;
    standIn("echo run >> '" + (log / "runs").string() + "'");
    session.setState(Session::ManualEntry{roll.path(), {}});
    QCoro::Task<> first = session.submitManual(test::minimalPayload());
    QCoro::Task<> second = session.submitManual(test::minimalPayload());
    await(std::move(first));
    await(std::move(second));
    EXPECT_NO_THROW(in<Session::Done>(session));
    EXPECT_EQ(readFile(log / "runs"), "run\n");
}

/// Ways in which exiftool fails a run, with a part of what the user reads.
struct Failure {
    const char *title;
    const char *script;
    const char *text;
};

class FailingExiftool : public IngestViewModelTest, public ::testing::WithParamInterface<Failure>
{};

TEST_P(FailingExiftool, isShownAndCostsNothing)
{
    fillRoll();
    const std::string original = readFile(roll / "01.jpg");
    scan();
    standIn(GetParam().script);
    await(session.runIngest());
    EXPECT_THAT(in<Session::Error>(session).text.toStdString(), HasSubstr(GetParam().text));
    EXPECT_EQ(readFile(roll / "01.jpg"), original);
    EXPECT_EQ(readFile(roll / "_originals" / "01.jpg"), original);

    // The next ingest works.
    fs::remove_all(applicationFolder());
    session.setState(Session::Idle{});
    scan();
    await(session.runIngest());
    EXPECT_NO_THROW(in<Session::Done>(session));
}

INSTANTIATE_TEST_SUITE_P(
    IngestViewModel, FailingExiftool,
    ::testing::Values(
        Failure{"status", "echo 'Error: no such tag' >&2; exit 1",
                "exiftool exited with code 1\n\nError: no such tag\n"},
        Failure{"killed", "kill -9 $$", "exiftool exited with code 137\n\n"},
        Failure{"floodingBothPipes",
                "head -c 1048576 /dev/zero | tr '\\0' o; head -c 1048576 /dev/zero | tr '\\0' e "
                ">&2; exit 2",
                "exiftool exited with code 2\n\neeee"}),
    [](const auto &failure) { return std::string(failure.param.title); });

TEST_F(IngestViewModelTest, warningsOfASuccessfulRunAreNoFailure)
{
    fillRoll();
    scan();
    standIn("echo 'Warning: minor' >&2");
    await(session.runIngest());
    EXPECT_NO_THROW(in<Session::Done>(session));
}

TEST_F(IngestViewModelTest, aFileThatVanishedBeforeTheRunIsNamed)
{
    fillRoll();
    scan();
    fs::remove(roll / "03.tif");
    await(session.runIngest());
    EXPECT_THAT(in<Session::Error>(session).text.toStdString(), HasSubstr("03.tif"));
}

TEST_F(IngestViewModelTest, aFolderThatVanishedBeforeTheRunIsAnError)
{
    fillRoll();
    for (const BackupMode mode : allBackupModes) {
        session.setBackupMode(mode);
        await(session.scan(roll.path()));
        fs::rename(roll.path(), roll.path().string() + "-elsewhere");
        await(session.runIngest());
        EXPECT_THAT(in<Session::Error>(session).text.toStdString(), HasSubstr("01.jpg"));
        fs::remove_all(roll.path());
        fs::rename(roll.path().string() + "-elsewhere", roll.path());
    }
}

TEST_F(IngestViewModelTest, aKilledExiftoolDoesNotBlockTheNextRun)
{
    fillRoll();
    scan();
    const std::string leftover = (roll / "01.jpg").string() + "_exiftool_tmp";
    standIn("echo half > '" + leftover + "'; kill -9 $$");
    await(session.runIngest());
    EXPECT_THAT(in<Session::Error>(session).text.toStdString(), HasSubstr("137"));
    EXPECT_FALSE(fs::exists(leftover));

    fs::remove_all(applicationFolder());
    roll.write("01.jpg_exiftool_tmp", "left by a program that ended with its child");
    scan();
    await(session.runIngest());
    EXPECT_NO_THROW(in<Session::Done>(session));
    EXPECT_FALSE(fs::exists(leftover));
}

TEST_F(IngestViewModelTest, anAbandonedFormWritesNothing)
{
    const TempDir other;
    const fs::path frame = writeFrame(roll / "01.jpg");
    const std::string before = readFile(frame);
    session.setState(Session::ManualEntry{roll.path(), {}});
    QCoro::Task<> submitted = session.submitManual(test::minimalPayload());
    session.setState(Session::ManualEntry{other.path(), {}});
    await(std::move(submitted));
    EXPECT_EQ(in<Session::ManualEntry>(session).folder, other.path());
    EXPECT_EQ(readFile(frame), before);
}

TEST_F(IngestViewModelTest, aSessionMayEndBeforeItsWork)
{
    fillRoll();
    auto brief = std::make_unique<Session>();
    QCoro::Task<> scanning = brief->scan(roll.path());
    brief.reset();
    EXPECT_NO_THROW(await(std::move(scanning)));
}

TEST_F(IngestViewModelTest, theScanThatEndsLastSetsTheState)
{
    fillRoll();
    const TempDir empty;
    QCoro::Task<> longer = session.scan(roll.path());
    QCoro::Task<> shorter = session.scan(empty.path());
    await(std::move(shorter));
    await(std::move(longer));
    EXPECT_EQ(in<Session::Ready>(session).plan.folder, roll.path());
}

TEST_F(IngestViewModelTest, anOutputFolderThatCannotBeMadeIsAnErrorAndLeavesTheRoll)
{
    fillRoll();
    const std::string original = readFile(roll / "01.jpg");
    scan();
    roll.write("_originals", "a file in the way");
    await(session.runIngest());
    EXPECT_THAT(in<Session::Error>(session).text.toStdString(), HasSubstr("_originals"));
    EXPECT_EQ(readFile(roll / "01.jpg"), original);
}

TEST_F(IngestViewModelTest, aSecondRecursiveRunKeepsTheTrueBackups)
{
    fillRoll();
    const std::string original = readFile(roll / "01.jpg");
    session.setRecursive(true);
    scan();
    await(session.runIngest());
    EXPECT_NO_THROW(in<Session::Done>(session));
    scan();
    await(session.runIngest());
    EXPECT_THAT(in<Session::Error>(session).text.toStdString(), HasSubstr("_originals/01.jpg"));
    EXPECT_EQ(readFile(roll / "_originals" / "01.jpg"), original);
}

TEST_F(IngestViewModelTest, theEventLoopTurnsWhileWriting)
{
    fillRoll();
    scan();
    const TempDir signal;
    // The child ends only once the event loop, turning meanwhile, has written the file.
    standIn("while [ ! -e '" + (signal / "go").string() + "' ]; do :; done");
    QTimer::singleShot(0, &session, [&] { signal.write("go", ""); });
    await(session.runIngest());
    EXPECT_NO_THROW(in<Session::Done>(session));
}

} // namespace
} // namespace quillmark
