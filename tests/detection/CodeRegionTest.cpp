// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/CodeRegion.h"
#include "CodePictures.h"
#include "detection/Reduce.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillmark {
namespace {

using testing::IsEmpty;
using testing::Le;
using testing::SizeIs;

TEST(CodeRegion, aSoftCodeStandsInsideOneOfTheRegions)
{
    test::SimulatedFrame frame;
    frame.width = 1500;
    frame.height = 1000;
    frame.seed = 3;
    frame.film.grain = 0.02;
    test::SimulatedCard card;
    card.code = test::encodeQr("A slate of a roll", test::QrLevel::M, 14);
    card.pose = {.centreX = 900, .centreY = 420, .modulePixels = 4.5, .tilt = 25};
    card.blur = 0.5;
    frame.cards.push_back(card);
    const auto corners = test::geometryOf(frame, card).codeCorners();
    const LumaImage picture = test::renderLuma(frame);
    const auto holdsTheCode = [&corners](const PixelArea &area) {
        return std::ranges::all_of(corners, [&area](const test::Point &corner) {
            return corner.x > area.left && corner.x < area.left + area.width &&
                   corner.y > area.top && corner.y < area.top + area.height;
        });
    };
    const std::vector<PixelArea> regions = findCodeRegions(picture);
    EXPECT_THAT(regions, SizeIs(Le(3)));
    EXPECT_THAT(regions, testing::Contains(testing::Truly(holdsTheCode)));
}

TEST(CodeRegion, plainAndSmallPicturesHaveNone)
{
    EXPECT_THAT(findCodeRegions(LumaImage()), IsEmpty());
    EXPECT_THAT(findCodeRegions(test::plainPicture(1, 1, 0)), IsEmpty());
    EXPECT_THAT(findCodeRegions(test::noisePicture(5000, 40, 2)), IsEmpty());
    EXPECT_THAT(findCodeRegions(test::plainPicture(800, 600, 0)), IsEmpty());
    EXPECT_THAT(findCodeRegions(test::plainPicture(800, 600, 200)), IsEmpty());
}

TEST(CodeRegion, stripesHaveNoneForTheyGoOneWay)
{
    LumaImage stripes = test::plainPicture(800, 600, 255);
    for (int y = 150; y < 450; ++y) {
        for (int x = 200; x < 500; ++x) {
            stripes.row(y)[x] = x / 4 % 2 == 0 ? 0 : 255;
        }
    }
    EXPECT_THAT(findCodeRegions(stripes), IsEmpty());
}

} // namespace
} // namespace quillmark
