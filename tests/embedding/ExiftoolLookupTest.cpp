// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "embedding/ExiftoolLookup.h"

#include "Programs.h"
#include "embedding/Exiftool.h"
#include "embedding/ResourceBundle.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace quillmark {
namespace {

namespace fs = std::filesystem;
using test::TempDir;
using test::writeProgram;

constexpr std::string_view script = "#!/bin/sh\n";

class LocateExiftool : public ::testing::Test
{
protected:
    std::optional<fs::path> locate() const
    {
        return locateExiftool(m_folder / "bundle",
                              {m_folder / "first/exiftool", m_folder / "second/exiftool",
                               m_folder / "third/exiftool"});
    }

    TempDir m_folder;
};

TEST_F(LocateExiftool, shippedOneIsPreferred)
{
    writeProgram(m_folder, "first/exiftool", script);
    writeProgram(m_folder, "bundle/exiftool/exiftool", script);
    EXPECT_EQ(locate(), m_folder / "bundle/exiftool/exiftool");
}

TEST_F(LocateExiftool, shippedOneThatCannotBeExecutedIsSkipped)
{
    m_folder.write("bundle/exiftool/exiftool", script);
    writeProgram(m_folder, "second/exiftool", script);
    EXPECT_EQ(locate(), m_folder / "second/exiftool");
}

TEST_F(LocateExiftool, usualPlacesInTheirOrder)
{
    writeProgram(m_folder, "third/exiftool", script);
    EXPECT_EQ(locate(), m_folder / "third/exiftool");
    writeProgram(m_folder, "first/exiftool", script);
    EXPECT_EQ(locate(), m_folder / "first/exiftool");
}

TEST_F(LocateExiftool, folderIsNoProgram)
{
    fs::create_directories(m_folder / "bundle/exiftool/exiftool");
    fs::create_directories(m_folder / "first/exiftool");
    EXPECT_EQ(locate(), std::nullopt);
}

TEST_F(LocateExiftool, symbolicLinkToAProgramCounts)
{
    fs::create_directories(m_folder / "first");
    fs::create_symlink(writeProgram(m_folder, "elsewhere", script), m_folder / "first/exiftool");
    fs::create_directories(m_folder / "bundle/exiftool");
    fs::create_symlink(m_folder / "nowhere", m_folder / "bundle/exiftool/exiftool");
    EXPECT_EQ(locate(), m_folder / "first/exiftool");
}

TEST_F(LocateExiftool, withoutABundleTheUsualPlacesRemain)
{
    const fs::path program = writeProgram(m_folder, "first/exiftool", script);
    EXPECT_EQ(locateExiftool(std::nullopt, {program}), program);
    EXPECT_EQ(locateExiftool(std::nullopt, {}), std::nullopt);
}

TEST(FindConfiguration, bundleIsPreferred)
{
    const TempDir folder;
    const fs::path inBundle = folder.write("app/some.bundle/quillmark.config", "1;");
    folder.write("app/quillmark.config", "1;");
    EXPECT_EQ(findConfiguration(folder / "app/some.bundle", folder / "app"), inBundle);
}

TEST(FindConfiguration, applicationFolderServesWhereTheBundleLacksIt)
{
    const TempDir folder;
    fs::create_directories(folder / "app/some.bundle/quillmark.config"); // a folder, no file
    const fs::path beside = folder.write("app/quillmark.config", "1;");
    EXPECT_EQ(findConfiguration(folder / "app/some.bundle", folder / "app"), beside);
    EXPECT_EQ(findConfiguration(std::nullopt, folder / "app"), beside);
}

TEST(FindConfiguration, nothingWhereThereIsNone)
{
    const TempDir folder;
    EXPECT_EQ(findConfiguration(folder / "some.bundle", folder / "app"), std::nullopt);
    EXPECT_EQ(findConfiguration(std::nullopt, folder / "app"), std::nullopt);
}

TEST(Exiftool, configurationOfTheBuildIsFound)
{
    const std::optional<fs::path> configuration = Exiftool::configURL();
    ASSERT_TRUE(configuration);
    EXPECT_EQ(*configuration, ResourceBundle::ownPlaces().builtBundle / "quillmark.config");
}

TEST(Exiftool, installedProgramIsFound)
{
    const std::optional<fs::path> program = Exiftool::locate();
    ASSERT_TRUE(program) << "these tests need exiftool";
    EXPECT_TRUE(program->is_absolute());
}

} // namespace
} // namespace quillmark
