// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "embedding/EmbedRun.h"

#include "Programs.h"
#include "embedding/Exiftool.h"
#include "support/Printers.h"
#include "support/Samples.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <system_error>

namespace quillmark {
namespace {

namespace fs = std::filesystem;
using namespace Qt::StringLiterals;
using test::fullPayload;
using test::minimalPayload;
using test::readFile;
using test::TempDir;
using test::writeProgram;
using ::testing::ElementsAre;

const QString generator = u"quillmark-macos@0.0.0"_s;

/// Runs programs that stand in for exiftool.
class EmbedRun : public ::testing::Test
{
protected:
    void run(const std::vector<fs::path> &files, const SlatePayload &payload = minimalPayload())
    {
        runEmbed(m_setup, files, payload, generator);
    }

    ExiftoolError failure()
    {
        try {
            run({"/roll/1.jpg"});
        } catch (const ExiftoolError &error) {
            return error;
        }
        throw std::logic_error("the run was a success");
    }

    TempDir m_folder;
    ExiftoolSetup m_setup{
        .program = writeProgram(m_folder, "exiftool", "#!/bin/sh\n"),
        .configuration = m_folder.write("quillmark.config", "1;"),
    };
};

TEST_F(EmbedRun, callHasOptionsAssignmentsAndFilesInThisOrder)
{
    m_setup.program = writeProgram(m_folder, "recorder",
                                   "#!/usr/bin/perl\n"
                                   "open my $record, '>', $0 . '.arguments' or die;\n"
                                   "print $record map { \"$_\\0\" } @ARGV;\n");
    run({"/roll/b \n2.jpg", "/roll/caf\xe9.tif"}, fullPayload());

    std::string expected;
    const auto expect = [&expected](const std::string &argument) { expected += argument + '\0'; };
    expect("-config");
    expect(m_setup.configuration->native());
    expect("-overwrite_original");
    expect("-codedcharacterset=utf8");
    expect("-charset");
    expect("iptc=UTF8");
    for (const QString &argument : Exiftool::tagArguments(fullPayload(), generator)) {
        expect(argument.toStdString());
    }
    expect("/roll/b \n2.jpg");
    expect("/roll/caf\xe9.tif");
    EXPECT_EQ(readFile(m_folder / "recorder.arguments"), expected);
}

TEST_F(EmbedRun, warningsAreASuccess)
{
    m_setup.program =
        writeProgram(m_folder, "warner", "#!/bin/sh\necho 'Warning: something' >&2\nexit 0\n");
    EXPECT_NO_THROW(run({"/roll/1.jpg"}));
}

TEST_F(EmbedRun, failureCarriesTheToolsText)
{
    m_setup.program = writeProgram(m_folder, "failing",
                                   "#!/bin/sh\necho result\n"
                                   "printf 'Error: caf\\303\\251\\n  and more\\n' >&2\nexit 1\n");
    const ExiftoolError error = failure();
    EXPECT_EQ(error.which(), ExiftoolError::Case::failed);
    EXPECT_EQ(error.code(), 1);
    EXPECT_EQ(error.stderrText(), u"Error: café\n  and more\n"_s);
    EXPECT_EQ(error.description(), u"exiftool exited with code 1\n\nError: café\n  and more\n"_s);
    EXPECT_EQ(QString::fromUtf8(error.what()), error.description());
}

TEST_F(EmbedRun, errorTextThatIsNotUtf8CountsAsEmpty)
{
    m_setup.program =
        writeProgram(m_folder, "failing", "#!/bin/sh\nprintf 'caf\\351' >&2\nexit 2\n");
    const ExiftoolError error = failure();
    EXPECT_EQ(error.code(), 2);
    EXPECT_EQ(error.stderrText(), QString());
    EXPECT_EQ(error.description(), u"exiftool exited with code 2\n\n"_s);
}

/// The cut goes through a character of two bytes.
TEST_F(EmbedRun, errorTextWithoutEndIsCutAndSaysSo)
{
    m_setup.program =
        writeProgram(m_folder, "flooding",
                     "#!/usr/bin/perl\n"
                     "print STDERR 'x'; print STDERR \"\\303\\251\" x 65536 for 1 .. 200;\n"
                     "exit 1;\n");
    const ExiftoolError error = failure();
    const QString note = u"\n\n(The rest of what exiftool said is left out.)"_s;
    EXPECT_TRUE(error.stderrText().startsWith(u"xéé"));
    EXPECT_TRUE(error.stderrText().endsWith(u"éé"_s + note));
    EXPECT_EQ(error.stderrText().size(), (8 << 20) / 2 + note.size());
}

TEST_F(EmbedRun, killedToolIsAFailure)
{
    m_setup.program = writeProgram(m_folder, "dying", "#!/bin/sh\nkill -KILL $$\n");
    EXPECT_EQ(failure().code(), 137);
}

TEST_F(EmbedRun, missingProgramIsReportedFirst)
{
    m_setup = {};
    const ExiftoolError error = failure();
    EXPECT_EQ(error.which(), ExiftoolError::Case::notInstalled);
    EXPECT_EQ(error.description(), u"exiftool not found. The app bundle is missing its vendored "
                                   "exiftool — please reinstall Quillmark."_s);
    EXPECT_EQ(QString::fromUtf8(error.what()), error.description());
}

TEST_F(EmbedRun, missingConfigurationFailsBeforeAnythingRuns)
{
    m_setup.program = writeProgram(m_folder, "recorder", "#!/bin/sh\n: >\"$0.started\"\n");
    m_setup.configuration.reset();
    const ExiftoolError error = failure();
    EXPECT_EQ(error.which(), ExiftoolError::Case::failed);
    EXPECT_EQ(error.code(), -1);
    EXPECT_EQ(error.stderrText(), u"Bundled quillmark.config missing"_s);
    EXPECT_EQ(error.description(),
              u"exiftool exited with code -1\n\nBundled quillmark.config missing"_s);
    EXPECT_FALSE(fs::exists(m_folder / "recorder.started"));
}

TEST_F(EmbedRun, textsThatNoArgumentCanHoldAreNamedBeforeAnythingRuns)
{
    m_setup.program = writeProgram(m_folder, "recorder", "#!/bin/sh\n: >\"$0.started\"\n");
    SlatePayload payload = fullPayload();
    payload.cameraMake = QChar(u'\0');
    payload.notes = u"begins"_s + QChar(u'\0') + u"ends = here"_s;
    try {
        run({"/roll/1.jpg"}, payload);
        FAIL() << "the run was a success";
    } catch (const ExiftoolError &error) {
        EXPECT_EQ(error.which(), ExiftoolError::Case::failed);
        EXPECT_EQ(error.code(), -1);
        EXPECT_EQ(error.description(),
                  u"exiftool exited with code -1\n\nNo file was tagged, because exiftool cannot "
                  "be given a text that holds the character U+0000: CameraMake, Notes"_s);
    }
    EXPECT_FALSE(fs::exists(m_folder / "recorder.started"));
}

TEST_F(EmbedRun, launchErrorPassesThrough)
{
    m_setup.program = m_folder / "gone";
    EXPECT_THROW(run({"/roll/1.jpg"}), std::system_error);
}

TEST(AbsoluteNames, areWhatTheFilesAreCalledFromTheRoot)
{
    const fs::path here = fs::current_path();
    EXPECT_THAT(absoluteNames({"-delete_original!", "@list", "/kept/as it/../is"}),
                ElementsAre((here / "-delete_original!").native(), (here / "@list").native(),
                            "/kept/as it/../is"));
}

} // namespace
} // namespace quillmark
