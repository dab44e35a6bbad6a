// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SlateDetector.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

namespace quillmark {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The listing as paths below the folder, in the order given.
std::vector<std::string> listing(const fs::path &folder, bool recursive)
{
    std::vector<std::string> names;
    for (const fs::path &image : SlateDetector::enumerateImages(folder, recursive)) {
        names.push_back(image.lexically_relative(folder).native());
    }
    return names;
}

TEST(ImageEnumeration, keepsTheFourExtensionsInAnyLetterCase)
{
    const test::TempDir roll;
    for (const char *name : {"A.JPG", "b.Jpeg", "c.TIF", "d.tiff", "e.jpe", "f.png", "g",
                             "h.jpg.xmp", "jpg", "i.", "j.tiff2", "k.jpg "}) {
        roll.write(name, "");
    }
    EXPECT_THAT(listing(roll.path(), false), ElementsAre("A.JPG", "b.Jpeg", "c.TIF", "d.tiff"));
}

TEST(ImageEnumeration, sortsByCodePointWithoutFoldingOrCounting)
{
    const test::TempDir roll;
    for (const char *name : {"b.jpg", "A.TIF", "a.jpeg", "Z.jpg", "frame2.jpg", "frame10.jpg"}) {
        roll.write(name, "");
    }
    EXPECT_THAT(listing(roll.path(), false),
                ElementsAre("A.TIF", "Z.jpg", "a.jpeg", "b.jpg", "frame10.jpg", "frame2.jpg"));
}

TEST(ImageEnumeration, sortsBeyondTheBasicPlaneByCodePoint)
{
    // In UTF-16 the surrogates of U+1F39E sort before U+FF21.
    const test::TempDir roll;
    const std::string fullWidthA = "\xEF\xBC\xA1.jpg";
    const std::string filmFrames = "\xF0\x9F\x8E\x9E.jpg";
    roll.write(fullWidthA, "");
    roll.write(filmFrames, "");
    EXPECT_THAT(listing(roll.path(), false), ElementsAre(fullWidthA, filmFrames));
}

TEST(ImageEnumeration, comparesComposedFormsButKeepsNamesAsTheyAre)
{
    // "e" with a combining acute sorts as "é" (U+00E9), that is after "f" and before "ê".
    const test::TempDir roll;
    const std::string decomposed = "e\xCC\x81.jpg";
    const std::string circumflex = "\xC3\xAA.jpg";
    roll.write(decomposed, "");
    roll.write("f.jpg", "");
    roll.write(circumflex, "");
    EXPECT_THAT(listing(roll.path(), false), ElementsAre("f.jpg", decomposed, circumflex));
}

TEST(ImageEnumeration, listsNamesThatAreNotUtf8)
{
    const test::TempDir roll;
    const std::string latin1 = "caf\xE9.jpg";
    const std::string other = "caf\xE8.jpg";
    roll.write(latin1, "");
    roll.write(other, "");
    EXPECT_THAT(listing(roll.path(), false), ElementsAre(other, latin1));
}

TEST(ImageEnumeration, hiddenEntriesAreNeitherListedNorEntered)
{
    const test::TempDir roll;
    roll.write(".hidden.jpg", "");
    roll.write(".cache/x.jpg", "");
    roll.write("sub/.y.jpg", "");
    EXPECT_THAT(listing(roll.path(), false), IsEmpty());
    EXPECT_THAT(listing(roll.path(), true), IsEmpty());
}

TEST(ImageEnumeration, subfoldersAreListedOnlyWhenAskedInFullPathOrder)
{
    const test::TempDir roll;
    for (const char *name : {"sub/x.jpg", "sub1.jpg", "subA.jpg", "sub/deep/er/z.tif", "a.jpg"}) {
        roll.write(name, "");
    }
    EXPECT_THAT(listing(roll.path(), false), ElementsAre("a.jpg", "sub1.jpg", "subA.jpg"));
    EXPECT_THAT(listing(roll.path(), true),
                ElementsAre("a.jpg", "sub/deep/er/z.tif", "sub/x.jpg", "sub1.jpg", "subA.jpg"));
}

TEST(ImageEnumeration, foldersOfOneNameInTwoSpellingsAreListedAsOne)
{
    const test::TempDir roll;
    const std::string composed = "caf\xC3\xA9";
    const std::string decomposed = "cafe\xCC\x81";
    for (const std::string &name :
         {composed + "/1.jpg", decomposed + "/2.jpg", composed + "/3.jpg", decomposed + "/3.jpg",
          composed + "/in/5.jpg", decomposed + "/in/4.jpg", std::string("cafe.jpg"),
          composed + ".jpg"}) {
        roll.write(name, "");
    }
    EXPECT_THAT(listing(roll.path(), true),
                ElementsAre("cafe.jpg", composed + ".jpg", composed + "/1.jpg",
                            decomposed + "/2.jpg", decomposed + "/3.jpg", composed + "/3.jpg",
                            decomposed + "/in/4.jpg", composed + "/in/5.jpg"));
}

TEST(ImageEnumeration, aWholeTreeIsInTheOrderOfItsPaths)
{
    const test::TempDir roll;
    std::vector<std::string> expected;
    for (const char *folder :
         {"", "a/", "a-b/", "a.jpg/", "a/0/", "a/9.jpg/", "b/c/d/e/f/", "\xC3\xA4/"}) {
        for (const char *name : {"0.jpg", "a.tif", "a0.jpg", "a-1.jpg", "z.jpeg", "\xC3\xA4.jpg"}) {
            expected.push_back(std::string(folder) + name);
            roll.write(expected.back(), "");
        }
    }
    expected.emplace_back("a.jpg"); // the folder
    expected.emplace_back("a/9.jpg");
    std::sort(expected.begin(), expected.end());
    expected.erase(std::unique(expected.begin(), expected.end()), expected.end());
    EXPECT_EQ(listing(roll.path(), true), expected);
}

TEST(ImageEnumeration, outputFoldersOfEarlierRunsAreOrdinary)
{
    const test::TempDir roll;
    roll.write("_originals/a.jpg", "");
    roll.write("_tagged/a.jpg", "");
    roll.write("a.jpg", "");
    EXPECT_THAT(listing(roll.path(), true),
                ElementsAre("_originals/a.jpg", "_tagged/a.jpg", "a.jpg"));
}

TEST(ImageEnumeration, onlyTheNameDecides)
{
    const test::TempDir roll;
    roll.write("album.jpg/inner.jpg", "");
    fs::create_symlink("nowhere", roll / "dangling.jpg");
    EXPECT_THAT(listing(roll.path(), false), ElementsAre("album.jpg", "dangling.jpg"));
    EXPECT_THAT(listing(roll.path(), true),
                ElementsAre("album.jpg", "album.jpg/inner.jpg", "dangling.jpg"));
}

TEST(ImageEnumeration, linksAreListedButNotFollowed)
{
    const test::TempDir roll;
    const test::TempDir elsewhere;
    elsewhere.write("far.jpg", "");
    fs::create_directory_symlink(elsewhere.path(), roll / "link");
    fs::create_directory_symlink(elsewhere.path(), roll / "link.jpg");
    fs::create_directory_symlink(roll.path(), roll / "loop");
    EXPECT_THAT(listing(roll.path(), true), ElementsAre("link.jpg"));
}

TEST(ImageEnumeration, aFolderGivenAsALinkIsWalked)
{
    const test::TempDir roll;
    roll.write("real/a.jpg", "");
    fs::create_directory_symlink(roll / "real", roll / "link");
    EXPECT_THAT(listing(roll / "link", false), ElementsAre("a.jpg"));
}

TEST(ImageEnumeration, whatCannotBeListedIsEmpty)
{
    const test::TempDir roll;
    EXPECT_THAT(listing(roll.path(), true), IsEmpty());
    EXPECT_THAT(listing(roll / "missing", true), IsEmpty());
    EXPECT_THAT(listing(roll.write("file.jpg", ""), true), IsEmpty());
    EXPECT_THAT(SlateDetector::enumerateImages({}, true), IsEmpty());
}

TEST(ImageEnumeration, pathsAreAbsolute)
{
    const test::TempDir roll;
    roll.write("a.jpg", "");
    const auto images = SlateDetector::enumerateImages(fs::relative(roll.path()), false);
    ASSERT_EQ(images.size(), 1);
    EXPECT_TRUE(images.front().is_absolute());
    EXPECT_TRUE(fs::equivalent(images.front(), roll / "a.jpg"));
    EXPECT_EQ(SlateDetector::enumerateImages(roll.path() / "", false).front(), roll / "a.jpg");
}

TEST(ImageEnumeration, mayRunInSeveralThreadsAtOnce)
{
    const test::TempDir roll;
    roll.write("sub/a.jpg", "");
    std::vector<std::vector<std::string>> results(4);
    {
        std::vector<std::jthread> threads;
        for (auto &result : results) {
            threads.emplace_back([&roll, &result] { result = listing(roll.path(), true); });
        }
    }
    EXPECT_THAT(results, ::testing::Each(ElementsAre("sub/a.jpg")));
}

} // namespace
} // namespace quillmark
