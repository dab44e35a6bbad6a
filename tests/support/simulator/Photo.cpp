// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/Photo.h"

#include "support/simulator/PlainCode.h"
#include "support/simulator/Random.h"
#include "support/simulator/SlateText.h"
#include "support/simulator/StoredFrame.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <stdexcept>
#include <utility>

namespace quillmark::test {
namespace {

constexpr int largestVersion = 10;
constexpr float leastModule = 2.0F; // pixels

/// A content of which the code has no more than the largest version's modules.
QrMatrix encodeSmall(Random &random, QByteArray &content)
{
    for (;;) {
        content = randomOtherText(random);
        const auto level = static_cast<QrLevel>(random.below(4));
        QrMatrix code = encodeQr(content, level, 1 + random.below(6));
        if (code.size <= 17 + 4 * largestVersion) {
            return code;
        }
    }
}

/// The plain code on a window's ground.
LumaImage takeScreenshot(Random &random, const QrMatrix &code, int width, double &modulePixels)
{
    const int quiet = 2 + random.below(3);
    const int whole =
        std::max(2, static_cast<int>(random.between(0.4F, 0.95F) * static_cast<float>(width)) /
                        (code.size + 2 * quiet));
    modulePixels = whole;
    const LumaImage drawn = drawCode(code, whole, quiet);
    LumaImage picture;
    picture.width = std::max(width, drawn.width);
    picture.height = drawn.height + random.below(picture.width);
    picture.pixels.assign(static_cast<std::size_t>(picture.width) *
                              static_cast<std::size_t>(picture.height),
                          static_cast<std::uint8_t>(190 + random.below(66)));
    const int left = random.below(picture.width - drawn.width + 1);
    const int top = random.below(picture.height - drawn.height + 1);
    for (int y = 0; y < drawn.height; ++y) {
        std::copy_n(drawn.row(y), drawn.width, picture.row(top + y) + left);
    }
    return picture;
}

SimulatedFrame photoFrame(Random &random, QrMatrix code, int width)
{
    SimulatedFrame frame;
    frame.width = width;
    frame.height = static_cast<int>(static_cast<float>(width) * random.between(0.7F, 1.4F));
    frame.seed = random.bits();
    frame.clutter = random.chance(0.3F) ? Clutter::print : Clutter::none;
    const auto shortSide = static_cast<float>(std::min(frame.width, frame.height));
    const float largest = 0.72F * shortSide / static_cast<float>(code.size);
    SimulatedCard card;
    card.code = std::move(code);
    card.pose.modulePixels = std::max(leastModule, largest * random.between(0.5F, 1.0F));
    card.pose.centreX = frame.width / 2.0;
    card.pose.centreY = frame.height / 2.0;
    frame.cards.push_back(std::move(card));
    return frame;
}

void holdTelephone(Random &random, SimulatedFrame &frame, bool rotated)
{
    SimulatedCard &card = frame.cards.front();
    card.pose.tilt = rotated ? random.between(0.0F, 360.0F) : random.between(-12.0F, 12.0F);
    card.pose.perspective = random.between(0.0F, 22.0F);
    card.pose.leanTowards = random.between(0.0F, 360.0F);
    card.pose.curl = random.between(-12.0F, 12.0F);
    card.blur = std::max<double>(random.between(0.05F, 0.45F), 0.4 / card.pose.modulePixels);
    frame.light.falloff = random.between(0.0F, 0.5F);
    frame.light.falloffTowards = random.between(0.0F, 360.0F);
    frame.film.contrast = random.between(0.4F, 1.0F);
    frame.film.grain = random.between(0.0F, 0.04F);
    frame.scan.sharpening = random.between(0.0F, 1.0F);
}

} // namespace

const char *nameOf(PhotoKind kind)
{
    switch (kind) {
    case PhotoKind::screenshot:
        return "screenshot";
    case PhotoKind::scaled:
        return "scaled";
    case PhotoKind::phone:
        return "phone";
    case PhotoKind::rotated:
        return "rotated";
    case PhotoKind::inverted:
        return "inverted";
    }
    throw std::invalid_argument("no such kind of photo");
}

Photo makePhoto(std::uint64_t seed, int index)
{
    Random random(seed * 200003 + static_cast<std::uint64_t>(index));
    Photo photo;
    photo.kind = allPhotoKinds[static_cast<std::size_t>(index) % allPhotoKinds.size()];
    const auto width = static_cast<int>(150 * std::pow(8.0F, random.unit()));
    QrMatrix code = encodeSmall(random, photo.content);
    photo.modules = code.size;
    if (photo.kind == PhotoKind::screenshot ||
        (photo.kind == PhotoKind::inverted && random.chance(0.5F))) {
        photo.luma = takeScreenshot(random, code, width, photo.modulePixels);
    } else {
        SimulatedFrame frame = photoFrame(random, std::move(code), width);
        photo.modulePixels = frame.cards.front().pose.modulePixels;
        FrameFile file;
        if (photo.kind == PhotoKind::scaled) {
            frame.light.unevenness = 0;
        } else {
            holdTelephone(random, frame, photo.kind == PhotoKind::rotated);
            file.format = FrameFormat::jpeg;
            file.quality = 60 + random.below(36);
        }
        photo.luma = storedLuma(frame, file);
    }
    if (photo.kind == PhotoKind::inverted) {
        photo.luma = negativeOf(std::move(photo.luma));
    }
    return photo;
}

} // namespace quillmark::test
