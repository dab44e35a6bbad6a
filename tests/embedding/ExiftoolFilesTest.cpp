// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// With the exiftool that is installed: which files are written, and what is reported.

#include "embedding/Exiftool.h"

#include "EmbedSupport.h"
#include "Programs.h"
#include "support/Printers.h"
#include "support/Samples.h"
#include "support/TempDir.h"

#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <stdexcept>

namespace quillmark {
namespace {

namespace fs = std::filesystem;
using namespace Qt::StringLiterals;
using test::embed;
using test::ExiftoolOnJpeg;
using test::fullPayload;
using test::isTagged;
using test::minimalPayload;
using test::readFile;
using test::TempDir;
using test::writeProgram;
using ::testing::HasSubstr;

ExiftoolError embedFailure(const std::vector<fs::path> &files)
{
    try {
        embed(files, minimalPayload());
    } catch (const ExiftoolError &error) {
        return error;
    }
    throw std::logic_error("the run was a success");
}

// --- Every kind of name ----------------------------------------------------------

TEST_F(ExiftoolOnJpeg, everyNameIsTagged)
{
    const std::vector<fs::path> names{"line\nbreak.jpg", "\nfirst.jpg", "-delete_original!.jpg",
                                      "@list.jpg",       "\"'.jpg",     "two  words.jpg",
                                      " ends.jpg ",      "caf\xe9.jpg", "\xff.jpg",
                                      "🌫.jpg",        "100%f.jpg",   "*?[a]{b}.jpg",
                                      "back\\slash.jpg", "pipe|",       "a=b<c>.jpg",
                                      "$HOME.jpg",       "&;`id`.jpg",  "−minus.jpg"};
    std::vector<fs::path> files;
    std::transform(names.begin(), names.end(), std::back_inserter(files),
                   [this](const fs::path &name) { return jpeg(name); });
    embed(files, minimalPayload());
    for (const fs::path &file : files) {
        EXPECT_TRUE(isTagged(file)) << file;
    }
}

TEST_F(ExiftoolOnJpeg, relativePathIsNeverAnOption)
{
    struct WorkingFolder {
        explicit WorkingFolder(const fs::path &folder) { fs::current_path(folder); }
        ~WorkingFolder() { fs::current_path(before); }
        fs::path before = fs::current_path();
    } inside(m_folder.path());
    embed({jpeg("-ver").filename(), jpeg("@list").filename(), jpeg("-").filename()},
          minimalPayload());
    EXPECT_TRUE(isTagged("-ver"));
    EXPECT_TRUE(isTagged("@list"));
    EXPECT_TRUE(isTagged("-"));
}

TEST_F(ExiftoolOnJpeg, neitherThePathNorAShellHasASay)
{
    struct PathOfTraps {
        explicit PathOfTraps(const fs::path &folder) { ::setenv("PATH", folder.c_str(), 1); }
        ~PathOfTraps() { ::setenv("PATH", before.c_str(), 1); }
        std::string before = ::getenv("PATH");
    };
    const TempDir traps;
    for (const char *name : {"exiftool", "perl", "env", "sh", "touch"}) {
        writeProgram(traps, name, "#!/bin/sh\n: >\"$0 was called\"\nexit 3\n");
    }
    const PathOfTraps path(traps.path());
    const fs::path file = jpeg("`touch 1`;$(touch 2)&touch 3|touch 4.jpg");
    embed({file}, minimalPayload());
    EXPECT_TRUE(isTagged(file));
    const fs::directory_iterator left(traps.path());
    EXPECT_EQ(std::distance(begin(left), end(left)), 5);
}

TEST_F(ExiftoolOnJpeg, symbolicLinkBecomesAWrittenCopy)
{
    const fs::path target = jpeg("target.jpg");
    fs::create_symlink("target.jpg", m_folder / "link.jpg");
    embed({m_folder / "link.jpg"}, minimalPayload());
    EXPECT_TRUE(isTagged(m_folder / "link.jpg"));
    EXPECT_FALSE(fs::is_symlink(m_folder / "link.jpg"));
    EXPECT_FALSE(isTagged(target));
}

TEST_F(ExiftoolOnJpeg, folderStandsForTheImagesDirectlyInIt)
{
    fs::create_directories(m_folder / "roll/below");
    const fs::path inside = jpeg("roll/1.jpg");
    const fs::path below = jpeg("roll/below/2.jpg");
    embed({m_folder / "roll"}, minimalPayload());
    EXPECT_TRUE(isTagged(inside));
    EXPECT_FALSE(isTagged(below));
}

TEST_F(ExiftoolOnJpeg, folderInWhichARunWasKilledIsWrittenTo)
{
    fs::create_directories(m_folder / "album.jpg/below");
    const std::vector<fs::path> inside{jpeg("album.jpg/1.jpg"), jpeg("album.jpg/.2.jpg")};
    jpeg("album.jpg/below/3.jpg");
    for (const char *name : {"1.jpg", ".2.jpg", "below/3.jpg"}) {
        m_folder.write("album.jpg/" + std::string(name) + "_exiftool_tmp", "half");
    }
    embed({m_folder / "album.jpg"}, minimalPayload());
    for (const fs::path &file : inside) {
        EXPECT_TRUE(isTagged(file)) << file;
    }
}

// --- Failures and waiting --------------------------------------------------------

TEST_F(ExiftoolOnJpeg, fileThatIsNoImageFailsAndTheOthersAreWritten)
{
    const fs::path first = jpeg("1.jpg");
    const fs::path text = m_folder.write("2.jpg", "no image at all");
    const fs::path last = jpeg("3.jpg");
    const ExiftoolError error = embedFailure({first, text, last});
    EXPECT_EQ(error.which(), ExiftoolError::Case::failed);
    EXPECT_EQ(error.code(), 1);
    EXPECT_THAT(error.stderrText().toStdString(), HasSubstr("2.jpg"));
    EXPECT_EQ(error.description(), u"exiftool exited with code 1\n\n"_s + error.stderrText());
    EXPECT_TRUE(isTagged(first));
    EXPECT_TRUE(isTagged(last));
    EXPECT_EQ(readFile(text), "no image at all");
}

TEST_F(ExiftoolOnJpeg, missingFileFails)
{
    const ExiftoolError error = embedFailure({m_folder / "gone.jpg"});
    EXPECT_EQ(error.code(), 1);
    EXPECT_THAT(error.stderrText().toStdString(), HasSubstr("gone.jpg"));
}

TEST_F(ExiftoolOnJpeg, noFilesAreASuccess)
{
    EXPECT_NO_THROW(embed({}, fullPayload()));
}

TEST_F(ExiftoolOnJpeg, eventLoopKeepsTurningWhileTheToolRuns)
{
    int turns = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&turns] { ++turns; });
    timer.start(std::chrono::milliseconds(1));
    embed({jpeg("frame.jpg")}, fullPayload());
    EXPECT_GT(turns, 5);
}

} // namespace
} // namespace quillmark
