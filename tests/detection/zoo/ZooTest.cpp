// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// Every way of storing a scan that is worth a thought, and what becomes of it. Each row says on
// the standard output how it was made and what came of it (script/zoo shows them as a table).

#include "detection/zoo/Zoo.h"
#include "detection/FrameDecoder.h"
#include "detection/FramePictures.h"
#include "detection/PictureDecoder.h"
#include "detection/SlateDetectionError.h"
#include "detection/SlateDetector.h"
#include "support/Await.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <optional>

namespace quillmark::test {
namespace {

const char *word(ZooOutcome outcome)
{
    switch (outcome) {
    case ZooOutcome::slate:
        return "slate";
    case ZooOutcome::noSlate:
        return "no slate";
    case ZooOutcome::refused:
        return "refused";
    }
    return "";
}

bool isRefusal(const SlateDetectionError &error)
{
    return error.which() == SlateDetectionError::Case::imageDecodeFailed;
}

ZooOutcome detected(const std::filesystem::path &file)
{
    try {
        const std::optional<SlateDetection> detection = await(SlateDetector::detect(file));
        if (detection) {
            EXPECT_EQ(detection->raw, slateText());
        }
        return detection ? ZooOutcome::slate : ZooOutcome::noSlate;
    } catch (const SlateDetectionError &error) {
        EXPECT_TRUE(isRefusal(error));
        return ZooOutcome::refused;
    }
}

bool hasPicture(const std::filesystem::path &file)
{
    try {
        const PictureImage picture = decodePicture(file, {300, 300});
        return picture.width > 0;
    } catch (const SlateDetectionError &error) {
        EXPECT_TRUE(isRefusal(error));
        return false;
    }
}

class Zoo : public ::testing::TestWithParam<ZooRow>
{
protected:
    void compareLuma(const DecodedFrame &frame) const
    {
        const LumaImage expected = expectedLuma(GetParam().picture(), GetParam().bits);
        ASSERT_EQ(frame.luma.width, expected.width);
        ASSERT_EQ(frame.luma.height, expected.height);
        EXPECT_LE(difference(frame.luma, expected).mean, GetParam().tolerance);
    }
};

TEST_P(Zoo, isReadOrRefused)
{
    const ZooRow &row = GetParam();
    const TempDir folder;
    const std::filesystem::path file = folder / "frame";
    row.write(file);

    const ZooOutcome outcome = detected(file);

    std::printf("zoo: %-9s %-9s %s\n", word(outcome), word(row.outcome), row.how.c_str());
    EXPECT_STREQ(word(outcome), word(row.outcome));
    EXPECT_EQ(hasPicture(file), row.outcome != ZooOutcome::refused);
    if (outcome != ZooOutcome::refused && row.tolerance < anyLuma) {
        const DecodedFrame frame = decodeFrame(file);
        compareLuma(frame);
        EXPECT_EQ(frame.orientation, row.orientation);
    }
}

const auto rowName = [](const auto &info) { return info.param.name; };

INSTANTIATE_TEST_SUITE_P(JpegCoding, Zoo, ::testing::ValuesIn(jpegCodingRows()), rowName);
INSTANTIATE_TEST_SUITE_P(JpegFile, Zoo, ::testing::ValuesIn(jpegFileRows()), rowName);
INSTANTIATE_TEST_SUITE_P(TiffSamples, Zoo, ::testing::ValuesIn(tiffSampleRows()), rowName);
INSTANTIATE_TEST_SUITE_P(TiffCoding, Zoo, ::testing::ValuesIn(tiffCodingRows()), rowName);
INSTANTIATE_TEST_SUITE_P(TiffLayout, Zoo, ::testing::ValuesIn(tiffLayoutRows()), rowName);
INSTANTIATE_TEST_SUITE_P(TiffFile, Zoo, ::testing::ValuesIn(tiffFileRows()), rowName);
INSTANTIATE_TEST_SUITE_P(OldTiff, Zoo, ::testing::ValuesIn(oldTiffRows()), rowName);

} // namespace
} // namespace quillmark::test
