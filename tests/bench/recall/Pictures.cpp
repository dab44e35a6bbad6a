// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "bench/recall/Pictures.h"

#include "support/simulator/Oracle.h"
#include "support/simulator/Photo.h"
#include "support/simulator/Random.h"
#include "support/simulator/TrialSet.h"

#include <array>
#include <stdexcept>
#include <string>
#include <utility>

namespace quillmark::bench {
namespace {

QString about(int modules, double modulePixels)
{
    return QStringLiteral("%1 modules of %2 px").arg(modules).arg(modulePixels, 0, 'f', 1);
}

Picture slate(std::uint64_t seed, int index)
{
    const test::Trial trial = test::makeTrial(seed, index);
    const test::SimulatedCard &card = trial.frame.cards.front();
    Picture picture{test::storedLuma(trial.frame, trial.file), trial.payload,
                    QString::fromLatin1(test::nameOf(trial.difficulty)),
                    about(card.code.size, card.pose.modulePixels)};
    picture.oracle = [trial](const LumaImage &luma) {
        const test::SimulatedCard &slate = trial.frame.cards.front();
        return test::askOracle(luma, slate.code, test::geometryOf(trial.frame, slate),
                               trial.frame.film.negative, trial.payload);
    };
    return picture;
}

Picture photo(std::uint64_t seed, int index)
{
    test::Photo made = test::makePhoto(seed, index);
    return {std::move(made.luma), made.content, QString::fromLatin1(test::nameOf(made.kind)),
            about(made.modules, made.modulePixels)};
}

constexpr std::array clutters{
    std::pair{test::Clutter::none, "landscape"},  std::pair{test::Clutter::buildings, "buildings"},
    std::pair{test::Clutter::tiles, "tiles"},     std::pair{test::Clutter::print, "print"},
    std::pair{test::Clutter::checker, "checker"}, std::pair{test::Clutter::mosaic, "mosaic"}};

Picture emptyFrame(std::uint64_t seed, int index, int width, int height)
{
    test::Random random(seed * 7919 + static_cast<std::uint64_t>(index));
    const auto &[clutter, name] = clutters[static_cast<std::size_t>(index) % clutters.size()];
    test::SimulatedFrame frame;
    frame.width = width;
    frame.height = height;
    frame.seed = random.bits();
    frame.clutter = clutter;
    frame.film.contrast = random.between(0.4F, 1.0F);
    frame.film.grain = random.between(0.0F, 0.07F);
    frame.film.dust = random.below(60);
    frame.film.scratches = random.below(3);
    frame.film.negative = random.chance(0.3F);
    return {test::renderLuma(frame), {}, QString::fromLatin1(name), {}};
}

} // namespace

PictureSet pictureSet(std::string_view name)
{
    if (name == "slates") {
        return slate;
    }
    if (name == "photos") {
        return photo;
    }
    if (name == "empty") {
        return [](std::uint64_t seed, int index) { return emptyFrame(seed, index, 2400, 1600); };
    }
    if (name == "large") {
        return [](std::uint64_t seed, int index) { return emptyFrame(seed, index, 6000, 4000); };
    }
    throw std::invalid_argument("no set of pictures is called " + std::string(name));
}

} // namespace quillmark::bench
