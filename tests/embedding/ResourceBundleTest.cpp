// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "embedding/ResourceBundle.h"
#include "support/Printers.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace quillmark {
namespace {

namespace fs = std::filesystem;
using test::TempDir;

const fs::path bundleName = "Quillmark_Quillmark.bundle";

/// Two places of a program that was never installed.
ResourceBundle::Places placesIn(const TempDir &folder)
{
    return {.applicationFolder = folder / "installed",
            .builtBundle = folder / "built" / bundleName};
}

TEST(ResourceBundle, installedBundleIsPreferred)
{
    const TempDir folder;
    const ResourceBundle::Places places = placesIn(folder);
    fs::create_directories(places.builtBundle);
    fs::create_directories(folder / "installed" / bundleName);
    EXPECT_EQ(ResourceBundle::find(places), folder / "installed" / bundleName);
}

TEST(ResourceBundle, builtBundleServesWhereNoneIsInstalled)
{
    const TempDir folder;
    const ResourceBundle::Places places = placesIn(folder);
    fs::create_directories(places.builtBundle);
    EXPECT_EQ(ResourceBundle::find(places), places.builtBundle);
}

TEST(ResourceBundle, fileOfThatNameIsNoBundle)
{
    const TempDir folder;
    const ResourceBundle::Places places = placesIn(folder);
    folder.write(fs::path("installed") / bundleName, "");
    EXPECT_EQ(ResourceBundle::find(places), std::nullopt);
}

TEST(ResourceBundle, isLookedForAfreshEachTime)
{
    const TempDir folder;
    const ResourceBundle::Places places = placesIn(folder);
    EXPECT_EQ(ResourceBundle::find(places), std::nullopt);
    fs::create_directories(places.builtBundle);
    EXPECT_EQ(ResourceBundle::find(places), places.builtBundle);
    fs::remove(places.builtBundle);
    EXPECT_EQ(ResourceBundle::find(places), std::nullopt);
}

TEST(ResourceBundle, missingTextNamesBothPlacesInTheirOrder)
{
    const ResourceBundle::Places places{.applicationFolder = "/usr/share/quillmark",
                                        .builtBundle = "/build/Quillmark_Quillmark.bundle"};
    EXPECT_EQ(ResourceBundle::missingText(places),
              QStringLiteral("could not load resource bundle: from "
                             "/usr/share/quillmark/Quillmark_Quillmark.bundle or "
                             "/build/Quillmark_Quillmark.bundle"));
}

TEST(ResourceBundle, applicationFolderFollowsTheExecutable)
{
    EXPECT_EQ(ResourceBundle::placesOf("/usr/bin/quillmark").applicationFolder,
              "/usr/share/quillmark");
    EXPECT_EQ(ResourceBundle::placesOf("/opt/caf\xe9/bin/quillmark").applicationFolder,
              "/opt/caf\xe9/share/quillmark");
    EXPECT_EQ(ResourceBundle::placesOf("/usr/bin/quillmark").installedBundle(),
              "/usr/share/quillmark" / bundleName);
}

TEST(ResourceBundle, runningProgramFindsTheBundleThatTheBuildWrote)
{
    const ResourceBundle::Places places = ResourceBundle::ownPlaces();
    EXPECT_TRUE(places.applicationFolder.is_absolute());
    EXPECT_TRUE(places.builtBundle.is_absolute());
    EXPECT_EQ(places.builtBundle.filename(), bundleName);
    EXPECT_EQ(ResourceBundle::find(places), places.builtBundle);
}

} // namespace
} // namespace quillmark
