// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/TrialSet.h"

#include "support/simulator/Random.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace quillmark::test {
namespace {

constexpr std::array<std::pair<int, int>, 5> sizes{
    {{1818, 1228}, {2400, 1600}, {3130, 2075}, {4500, 3000}, {6048, 4011}}};

/// Small values more often than large ones.
float skewed(Random &random, float low, float high)
{
    const float share = random.unit();
    return low + (high - low) * share * share;
}

QByteArray payloadOf(Random &random)
{
    // Like a slate's: JSON with texts beyond ASCII, 200 to 700 bytes.
    QByteArray payload = "{\"version\":2,\"location\":\"Grünerløkka\",\"notes\":\"";
    const int length = 150 + random.below(500);
    while (payload.size() < length) {
        payload.append(static_cast<char>('a' + random.below(26)));
    }
    return payload.append("\"}");
}

CardPose poseOf(Random &random, const SimulatedFrame &frame, int modules)
{
    const auto shortSide = static_cast<float>(std::min(frame.width, frame.height));
    const float largest = 0.62F * shortSide / static_cast<float>(modules);
    const float share = skewed(random, 0.0F, 1.0F);
    CardPose pose;
    pose.modulePixels = std::max(2.2F, 2.2F + (largest - 2.2F) * share);
    const auto reach = static_cast<float>(0.75 * pose.modulePixels * modules);
    const float marginX = std::min(reach, static_cast<float>(frame.width) / 2.0F);
    const float marginY = std::min(reach, static_cast<float>(frame.height) / 2.0F);
    pose.centreX = random.between(marginX, static_cast<float>(frame.width) - marginX);
    pose.centreY = random.between(marginY, static_cast<float>(frame.height) - marginY);
    pose.tilt = random.chance(0.3F) ? random.between(0.0F, 360.0F) : random.between(-8.0F, 8.0F);
    pose.perspective = skewed(random, 0.0F, 35.0F);
    pose.leanTowards = random.between(0.0F, 360.0F);
    pose.mirrored = random.chance(0.1F);
    return pose;
}

} // namespace

Trial makeTrial(std::uint64_t seed, int index)
{
    Random random(seed * 100003 + static_cast<std::uint64_t>(index));
    Trial trial;
    SimulatedFrame &frame = trial.frame;
    const auto [width, height] = sizes[static_cast<std::size_t>(random.below(sizes.size()))];
    frame.width = random.chance(0.3F) ? height : width;
    frame.height = frame.width == height ? width : height;
    frame.seed = random.bits();
    frame.clutter = random.chance(0.3F) ? Clutter::buildings : Clutter::none;

    trial.payload = payloadOf(random);
    SimulatedCard card;
    card.code = encodeQr(trial.payload, static_cast<QrLevel>(random.below(3)));
    card.pose = poseOf(random, frame, card.code.size);
    card.blur = skewed(random, 0.05F, 0.75F);
    frame.cards.push_back(std::move(card));

    frame.film.contrast = random.between(0.25F, 1.0F);
    frame.film.grain = skewed(random, 0.005F, 0.07F);
    frame.film.dust = random.below(80);
    frame.film.scratches = random.below(4);
    frame.film.negative = random.chance(0.2F);
    return trial;
}

} // namespace quillmark::test
