// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SlateDetector.h"
#include "detection/SlateDetectionError.h"
#include "payload/SlatePayloadJson.h"
#include "support/Await.h"
#include "support/Frames.h"
#include "support/ImageFiles.h"
#include "support/Printers.h"
#include "support/Samples.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace quillmark {
namespace {

namespace fs = std::filesystem;
using test::await;
using test::TempDir;
using test::writeFrame;

QByteArray slateText(const char *rollName)
{
    SlatePayload payload = test::minimalPayload();
    payload.rollName = QString::fromUtf8(rollName);
    return slatePayloadToJson(payload);
}

SlateDetectionError folderFailure(const fs::path &folder)
{
    try {
        await(SlateDetector::detectInFolder(folder, false));
    } catch (const SlateDetectionError &error) {
        return error;
    }
    throw std::logic_error("a slate was found");
}

TEST(SlateDetector, readsASlateWholeAndKeepsItsText)
{
    const TempDir roll;
    const QByteArray text = slatePayloadToJson(test::fullPayload());
    for (const char *name : {"a.jpg", "b.TIF"}) {
        const fs::path file = writeFrame(roll / name, {text});
        const auto detection = await(SlateDetector::detect(file));
        ASSERT_TRUE(detection.has_value()) << name;
        EXPECT_EQ(detection->file, file);
        EXPECT_EQ(detection->payload, test::fullPayload());
        EXPECT_EQ(detection->raw, QString::fromUtf8(text));
    }
}

TEST(SlateDetector, anImageWithoutASlateGivesNothing)
{
    const TempDir roll;
    EXPECT_FALSE(await(SlateDetector::detect(writeFrame(roll / "a.jpg"))).has_value());
}

TEST(SlateDetector, otherCodesBesideTheSlateAreIgnored)
{
    const TempDir roll;
    const fs::path file =
        writeFrame(roll / "a.jpg", {"https://example.org/a-menu", slateText("roll"), "12345"});
    const auto detection = await(SlateDetector::detect(file));
    ASSERT_TRUE(detection.has_value());
    EXPECT_EQ(detection->payload.rollName, QStringLiteral("roll"));
}

TEST(SlateDetector, codesThatOnlyLookLikeASlateDoNotHideIt)
{
    const TempDir roll;
    SlatePayload payload = test::minimalPayload();
    payload.version = 3;
    for (const QByteArray &other : {slatePayloadToJson(payload), QByteArray("{\"menu\":1}")}) {
        const fs::path file = writeFrame(roll / "a.jpg", {other, slateText("roll"), other});
        const auto detection = await(SlateDetector::detect(file));
        ASSERT_TRUE(detection.has_value()) << other.constData();
        EXPECT_EQ(detection->payload.rollName, QStringLiteral("roll"));
    }
}

TEST(SlateDetector, aSlateOfAnotherVersionIsNone)
{
    const TempDir roll;
    SlatePayload payload = test::minimalPayload();
    payload.version = 3;
    const fs::path file = writeFrame(roll / "a.jpg", {slatePayloadToJson(payload)});
    EXPECT_FALSE(await(SlateDetector::detect(file)).has_value());
}

TEST(SlateDetector, aTextFileNamedLikeAnImageIsNamedInTheFailure)
{
    const TempDir roll;
    const fs::path file = roll.write("notes.jpg", "no picture at all");
    try {
        await(SlateDetector::detect(file));
        FAIL() << "it was read";
    } catch (const SlateDetectionError &error) {
        EXPECT_EQ(error.which(), SlateDetectionError::Case::imageDecodeFailed);
        EXPECT_EQ(error.description(), QStringLiteral("Could not decode image: notes.jpg"));
    }
}

TEST(SlateDetector, onlyTheFirstPageIsSearched)
{
    const TempDir roll;
    test::RasterImage blank;
    blank.width = blank.height = 64;
    blank.channels = 1;
    blank.samples.assign(std::size_t{64} * 64, 40000);
    const test::RasterImage slate = test::renderFrame({slateText("roll")});
    test::writeTiff(roll / "slate-first.tif", {slate, blank});
    test::writeTiff(roll / "slate-second.tif", {blank, slate});
    EXPECT_TRUE(await(SlateDetector::detect(roll / "slate-first.tif")).has_value());
    EXPECT_FALSE(await(SlateDetector::detect(roll / "slate-second.tif")).has_value());
}

TEST(SlateDetector, firstSlateInPathOrderWins)
{
    const TempDir roll;
    writeFrame(roll / "a.jpg");
    roll.write("b.jpg", "corrupt");
    writeFrame(roll / "c.jpg", {slateText("first")});
    writeFrame(roll / "d.jpg", {slateText("second")});
    const SlateDetection detection = await(SlateDetector::detectInFolder(roll.path(), false));
    EXPECT_EQ(detection.file, roll / "c.jpg");
    EXPECT_EQ(detection.payload.rollName, QStringLiteral("first"));
}

TEST(SlateDetector, subfoldersAreSearchedOnlyWhenAsked)
{
    const TempDir roll;
    fs::create_directory(roll / "sub");
    writeFrame(roll / "sub" / "a.jpg", {slateText("deep")});
    EXPECT_EQ(folderFailure(roll.path()).which(), SlateDetectionError::Case::noImagesFound);
    EXPECT_EQ(await(SlateDetector::detectInFolder(roll.path(), true)).file, roll / "sub" / "a.jpg");
}

TEST(SlateDetector, aFolderWithoutImagesSaysSo)
{
    const TempDir roll;
    roll.write("notes.txt", "");
    const SlateDetectionError error = folderFailure(roll.path());
    EXPECT_EQ(error.which(), SlateDetectionError::Case::noImagesFound);
    EXPECT_EQ(error.description(), QStringLiteral("Folder contains no JPG or TIFF images."));
}

TEST(SlateDetector, aFolderWithoutASlateCountsEveryImage)
{
    const TempDir roll;
    writeFrame(roll / "a.jpg");
    EXPECT_EQ(folderFailure(roll.path()).description(),
              QStringLiteral("No Quillmark QR detected in any of the 1 images. Try selecting the "
                             "slate manually."));
    roll.write("b.jpg", "corrupt");
    fs::create_directory(roll / "album.tif");
    const SlateDetectionError error = folderFailure(roll.path());
    EXPECT_EQ(error.which(), SlateDetectionError::Case::noSlateFound);
    EXPECT_EQ(error.triedCount(), 3);
    EXPECT_EQ(error.description(),
              QStringLiteral("No Quillmark QR detected in any of the 3 images. Try selecting the "
                             "slate manually."));
}

} // namespace
} // namespace quillmark
