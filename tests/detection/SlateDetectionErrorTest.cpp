// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SlateDetectionError.h"

#include <gtest/gtest.h>

namespace quillmark::test {
namespace {

TEST(SlateDetectionError, namesTheImageThatCannotBeDecoded)
{
    const auto error = SlateDetectionError::imageDecodeFailed("/rolls/12/frame 07.tif");

    EXPECT_EQ(error.which(), SlateDetectionError::Case::imageDecodeFailed);
    EXPECT_EQ(error.description(), QStringLiteral("Could not decode image: frame 07.tif"));
    EXPECT_STREQ(error.what(), "Could not decode image: frame 07.tif");
    EXPECT_EQ(error.triedCount(), 0);
}

TEST(SlateDetectionError, countsTheImagesTriedAlwaysInThePlural)
{
    const auto one = SlateDetectionError::noSlateFound(1);

    EXPECT_EQ(one.which(), SlateDetectionError::Case::noSlateFound);
    EXPECT_EQ(one.triedCount(), 1);
    EXPECT_EQ(one.description(), QStringLiteral("No Quillmark QR detected in any of the 1 images. "
                                                "Try selecting the slate manually."));
    EXPECT_EQ(SlateDetectionError::noSlateFound(12345).description(),
              QStringLiteral("No Quillmark QR detected in any of the 12345 images. "
                             "Try selecting the slate manually."));
}

TEST(SlateDetectionError, saysThatAFolderHoldsNoImages)
{
    const auto error = SlateDetectionError::noImagesFound();

    EXPECT_EQ(error.which(), SlateDetectionError::Case::noImagesFound);
    EXPECT_EQ(error.description(), QStringLiteral("Folder contains no JPG or TIFF images."));
}

TEST(SlateDetectionError, isDescribedAsItDescribesItself)
{
    const auto failure = std::make_exception_ptr(SlateDetectionError::noImagesFound());

    EXPECT_EQ(describe(failure), QStringLiteral("Folder contains no JPG or TIFF images."));
}

} // namespace
} // namespace quillmark::test
