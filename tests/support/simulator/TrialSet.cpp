// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/TrialSet.h"

#include "support/simulator/Random.h"
#include "support/simulator/SlateText.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace quillmark::test {
namespace {

/// Small values more often than large ones.
float skewed(Random &random, float low, float high)
{
    const float share = random.unit();
    return low + (high - low) * share * share;
}

std::pair<int, int> sizeOf(Random &random)
{
    const float share = random.unit();
    if (share < 0.25F) {
        return {1500, 1000}; // a minilab's file
    }
    if (share < 0.45F) {
        return {1818, 1228};
    }
    if (share < 0.65F) {
        return {2400, 1600};
    }
    if (share < 0.8F) {
        return {3130, 2075};
    }
    if (share < 0.89F) {
        return {3600, 2400};
    }
    if (share < 0.95F) {
        return {4500, 3000};
    }
    return share < 0.993F ? std::pair{6048, 4011} : std::pair{12000, 8000};
}

/// The frame's sides, what is on it, and what every scan has a little of.
SimulatedFrame plainFrame(Random &random)
{
    SimulatedFrame frame;
    const auto [width, height] = sizeOf(random);
    const bool upright = random.chance(0.3F);
    frame.width = upright ? height : width;
    frame.height = upright ? width : height;
    frame.seed = random.bits();
    constexpr std::array clutters{Clutter::none,  Clutter::none,  Clutter::buildings,
                                  Clutter::tiles, Clutter::print, Clutter::mosaic};
    frame.clutter = clutters[static_cast<std::size_t>(random.below(clutters.size()))];
    frame.light.unevenness = random.between(0.02F, 0.15F);
    frame.distortion = random.between(-0.01F, 0.01F);
    frame.film.exposure = random.between(0.8F, 1.1F);
    frame.film.contrast = random.between(0.5F, 1.0F);
    frame.film.grain = skewed(random, 0.005F, 0.05F);
    frame.film.dust = random.below(50);
    frame.film.scratches = random.below(3);
    frame.scan.gamma = random.between(0.8F, 1.25F);
    return frame;
}

/// A module's largest side with which the card about fills the frame.
float largestModule(const SimulatedFrame &frame, int modules)
{
    const auto shortSide = static_cast<float>(std::min(frame.width, frame.height));
    return std::clamp(0.66F * shortSide / static_cast<float>(modules), 2.0F, 20.0F);
}

CardPose plainPose(Random &random, const SimulatedFrame &frame, int modules)
{
    CardPose pose;
    const float largest = largestModule(frame, modules);
    pose.modulePixels = skewed(random, std::min(3.2F, largest), largest);
    const float turn = random.unit();
    if (turn < 0.3F) {
        pose.tilt = random.between(0.0F, 360.0F);
    } else {
        pose.tilt = (turn < 0.5F ? 90.0 * random.below(4) : 0.0) + random.between(-8.0F, 8.0F);
    }
    pose.perspective = skewed(random, 0.0F, 12.0F);
    pose.leanTowards = random.between(0.0F, 360.0F);
    pose.curl = random.between(-4.0F, 4.0F);
    pose.curlTowards = random.between(0.0F, 360.0F);
    pose.mirrored = random.chance(0.04F);
    return pose;
}

/// Anywhere, but the whole code in the frame.
void placeCard(Random &random, const SimulatedFrame &frame, SimulatedCard &card)
{
    const double reach = 0.75 * card.pose.modulePixels * card.code.size;
    const auto place = [&random, reach](int limit) {
        const double margin = std::min(reach, limit / 2.0);
        return margin + random.unit() * (limit - 2 * margin);
    };
    card.pose.centreX = place(frame.width);
    card.pose.centreY = place(frame.height);
}

void makeSmall(Random &random, SimulatedCard &card)
{
    card.pose.modulePixels = random.between(2.0F, 3.0F);
    card.blur = random.between(0.2F, 0.65F);
}

void makeBlurred(Random &random, SimulatedCard &card)
{
    if (random.chance(0.65F)) {
        card.blur = random.between(0.4F, 0.75F);
    } else {
        card.shake = random.between(0.9F, 2.3F);
        card.shakeTowards = random.between(0.0F, 180.0F);
    }
    card.halation = random.between(0.0F, 0.25F);
}

void makeFaint(Random &random, SimulatedFrame &frame)
{
    frame.film.contrast = random.between(0.15F, 0.35F);
    frame.film.grain = skewed(random, 0.01F, 0.08F);
    frame.light.falloff = random.between(0.0F, 0.75F);
    frame.light.falloffTowards = random.between(0.0F, 360.0F);
    frame.light.unevenness = 0.2;
    frame.film.exposure =
        random.chance(0.5F) ? random.between(0.25F, 0.7F) : random.between(1.1F, 1.9F);
    frame.scan.gamma = random.between(0.5F, 2.0F);
}

/// Reflections that leave most of the code below them readable, if faint.
void makeGlare(Random &random, SimulatedFrame &frame, const SimulatedCard &card)
{
    const double side = card.code.size;
    const int lamps = 1 + random.below(2);
    for (int i = 0; i < lamps; ++i) {
        Glare glare;
        glare.middle = geometryOf(frame, card).map({side * random.unit(), side * random.unit()});
        glare.radiusX = side * card.pose.modulePixels * random.between(0.15F, 0.7F);
        glare.radiusY = glare.radiusX * random.between(0.4F, 1.5F);
        glare.strength = random.between(0.6F, 2.5F);
        frame.light.glares.push_back(glare);
    }
}

void makeCurved(Random &random, SimulatedFrame &frame, CardPose &pose)
{
    pose.perspective = random.between(8.0F, 30.0F);
    pose.curl = random.between(-55.0F, 55.0F);
    frame.distortion = random.between(-0.08F, 0.06F);
}

void makeGrainy(Random &random, SimulatedFrame &frame)
{
    // A pushed ISO 3200 film has clumps of some 10 micrometres: more pixels in larger scans.
    const auto fineness = static_cast<float>(std::max(frame.width, frame.height)) / 1500.0F;
    frame.film.grain = random.between(0.1F, 0.32F);
    frame.film.clumps = random.between(0.6F, 1.1F) * fineness;
    frame.film.dust = 40 + random.below(250);
    frame.film.scratches = random.below(12);
}

void makeJpeg(Random &random, SimulatedFrame &frame, CardPose &pose, FrameFile &file)
{
    file.format = FrameFormat::jpeg;
    file.quality = 50 + random.below(26);
    frame.scan.sharpening = random.between(0.0F, 1.8F);
    frame.scan.colours = {1.0, random.between(0.85F, 1.0F), random.between(0.7F, 1.0F)};
    frame.film.grain = random.between(0.02F, 0.14F);
    // What the file's blocks of 8 pixels hurt most.
    pose.modulePixels = std::min<double>(pose.modulePixels, random.between(2.2F, 5.0F));
}

void makeDeep(Random &random, SimulatedFrame &frame, FrameFile &file)
{
    file.format = FrameFormat::tiff;
    file.infrared = random.chance(0.4F);
    file.bits = random.chance(0.15F) ? 8 : 16;
    if (file.bits == 16 && random.chance(0.75F)) {
        frame.scan.gamma = 2.2;
        frame.scan.gain = random.between(0.01F, 0.2F);
        frame.film.exposure = random.between(0.15F, 1.0F);
        frame.film.grain = random.between(0.01F, 0.12F);
    }
    frame.film.negative = random.chance(0.3F);
}

void makeNegative(Random &random, SimulatedFrame &frame, CardPose &pose, FrameFile &file)
{
    frame.film.negative = random.chance(0.85F);
    pose.mirrored = !frame.film.negative || random.chance(0.4F);
    frame.film.contrast = random.between(0.3F, 0.9F);
    if (frame.film.negative && random.chance(0.5F)) {
        // A colour negative: flat, and orange from the mask.
        frame.scan.colours = {1.0, random.between(0.5F, 0.7F), random.between(0.25F, 0.45F)};
        frame.film.contrast = random.between(0.25F, 0.5F);
        frame.film.grain = random.between(0.01F, 0.08F);
        file.format = FrameFormat::jpeg;
        file.quality = 85;
    }
}

void makeScreened(Random &random, SimulatedCard &card)
{
    if (random.chance(0.5F)) {
        // From fine print to newsprint, whose dots are as large as modules.
        card.sheet.surface = Surface::halftone;
        card.sheet.pitch = random.between(0.4F, 1.3F);
        card.sheet.inkShare = random.between(0.5F, 0.85F);
    } else {
        // Pixels of about the scan's own size give the coarsest moire, and are worst where
        // a module has few of them.
        card.sheet.surface = Surface::display;
        card.pose.modulePixels =
            std::min<double>(card.pose.modulePixels, random.between(2.2F, 6.0F));
        const double pixels = random.between(0.9F, 3.0F);
        card.sheet.pitch = std::min(pixels / card.pose.modulePixels, 1.0);
    }
}

void makeHard(Random &random, Difficulty difficulty, Trial &trial)
{
    SimulatedFrame &frame = trial.frame;
    SimulatedCard &card = frame.cards.front();
    switch (difficulty) {
    case Difficulty::clean:
    case Difficulty::everything:
        break;
    case Difficulty::small:
        return makeSmall(random, card);
    case Difficulty::blurred:
        return makeBlurred(random, card);
    case Difficulty::faint:
        return makeFaint(random, frame);
    case Difficulty::glare:
        return makeGlare(random, frame, card);
    case Difficulty::curved:
        return makeCurved(random, frame, card.pose);
    case Difficulty::grainy:
        return makeGrainy(random, frame);
    case Difficulty::jpeg:
        return makeJpeg(random, frame, card.pose, trial.file);
    case Difficulty::deep:
        return makeDeep(random, frame, trial.file);
    case Difficulty::negative:
        return makeNegative(random, frame, card.pose, trial.file);
    case Difficulty::screened:
        return makeScreened(random, card);
    }
}

/// Two to four difficulties in the order in which light meets them.
void makeSeveralHard(Random &random, Trial &trial)
{
    int left = 2 + random.below(3);
    constexpr std::array order{Difficulty::screened, Difficulty::curved,   Difficulty::small,
                               Difficulty::blurred,  Difficulty::faint,    Difficulty::glare,
                               Difficulty::grainy,   Difficulty::negative, Difficulty::jpeg,
                               Difficulty::deep};
    for (std::size_t i = 0; i < order.size() && left > 0; ++i) {
        if (random.below(static_cast<int>(order.size() - i)) < left) {
            makeHard(random, order[i], trial);
            --left;
        }
    }
}

} // namespace

const char *nameOf(Difficulty difficulty)
{
    switch (difficulty) {
    case Difficulty::clean:
        return "clean";
    case Difficulty::small:
        return "small";
    case Difficulty::blurred:
        return "blurred";
    case Difficulty::faint:
        return "faint";
    case Difficulty::glare:
        return "glare";
    case Difficulty::curved:
        return "curved";
    case Difficulty::grainy:
        return "grainy";
    case Difficulty::jpeg:
        return "jpeg";
    case Difficulty::deep:
        return "deep";
    case Difficulty::negative:
        return "negative";
    case Difficulty::screened:
        return "screened";
    case Difficulty::everything:
        return "everything";
    }
    throw std::invalid_argument("no such difficulty");
}

Trial makeTrial(std::uint64_t seed, int index)
{
    Random random(seed * 100003 + static_cast<std::uint64_t>(index));
    Trial trial;
    trial.difficulty = allDifficulties[static_cast<std::size_t>(index) % allDifficulties.size()];
    trial.frame = plainFrame(random);
    trial.payload = randomSlateText(random);
    SimulatedCard card;
    card.code = encodeQr(trial.payload, static_cast<QrLevel>(random.below(3)), 8);
    card.pose = plainPose(random, trial.frame, card.code.size);
    card.blur = skewed(random, 0.05F, 0.4F);
    placeCard(random, trial.frame, card);
    trial.frame.cards.push_back(std::move(card));

    if (trial.difficulty == Difficulty::everything) {
        makeSeveralHard(random, trial);
    } else {
        makeHard(random, trial.difficulty, trial);
    }
    // No lens and scanner resolve a pixel.
    SimulatedCard &made = trial.frame.cards.front();
    made.blur = std::max(made.blur, 0.35 / made.pose.modulePixels);
    return trial;
}

} // namespace quillmark::test
