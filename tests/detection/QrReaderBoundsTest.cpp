// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "CodePictures.h"
#include "detection/QrReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

namespace quillmark {
namespace {

using testing::Each;
using testing::IsEmpty;

TEST(QrReaderBounds, picturesOfAnyShapeAreGoneThrough)
{
    constexpr std::array<std::pair<int, int>, 9> sizes{{{1, 1},
                                                        {1, 700},
                                                        {700, 1},
                                                        {2, 2},
                                                        {20, 20},
                                                        {59, 61},
                                                        {64, 64},
                                                        {20000, 100},
                                                        {100, 20000}}};
    for (const auto &[width, height] : sizes) {
        SCOPED_TRACE(testing::Message() << width << " x " << height);
        EXPECT_THAT(readQrCodes(test::plainPicture(width, height, 0), 1), IsEmpty());
        EXPECT_THAT(readQrCodes(test::plainPicture(width, height, 255), 1), IsEmpty());
        EXPECT_THAT(readQrCodes(test::noisePicture(width, height, 12), 1), Each(std::nullopt));
    }
}

TEST(QrReaderBounds, nothingIsReadFromPicturesFullOfWhatLooksLikeFinderPatterns)
{
    test::SimulatedFrame frame;
    frame.width = 1500;
    frame.height = 1000;
    frame.seed = 5;
    frame.clutter = test::Clutter::mosaic;
    EXPECT_THAT(readQrCodes(test::renderLuma(frame), 1), Each(std::nullopt));
}

} // namespace
} // namespace quillmark
