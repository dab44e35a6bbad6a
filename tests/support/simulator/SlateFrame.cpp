// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/SlateFrame.h"

#include "support/simulator/Optics.h"
#include "support/simulator/ParallelRows.h"
#include "support/simulator/Random.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <type_traits>

namespace quillmark::test {
namespace {

constexpr double halationSpread = 3; // modules

Overlay renderCard(const SimulatedFrame &frame, const SimulatedCard &card)
{
    const double module = card.pose.modulePixels;
    const Motion motion{card.shake * module, card.shakeTowards};
    const Halation halation{card.halation, halationSpread * module};
    const double sigma = card.blur * module;
    const Sheet sheet(card.code, hash64(frame.seed), card.sheet);
    const int margin = blurReach(sigma) + blurReach(motion) + blurReach(halation);
    Overlay overlay = renderCard(sheet, geometryOf(frame, card), frame.width, frame.height, margin,
                                 frame.workers);
    defocus(overlay, sigma, frame.workers);
    shake(overlay, motion, frame.workers);
    addHalation(overlay, halation, frame.workers);
    return overlay;
}

void layOver(const Overlay &overlay, int y, std::span<float> tone, std::span<float> warmth)
{
    const int line = y - overlay.top;
    if (line < 0 || line >= overlay.height) {
        return;
    }
    const int first = std::max(0, overlay.left);
    const int end = std::min(static_cast<int>(tone.size()), overlay.left + overlay.width);
    for (int x = first; x < end; ++x) {
        const std::size_t from =
            static_cast<std::size_t>(line) * static_cast<std::size_t>(overlay.width) +
            static_cast<std::size_t>(x - overlay.left);
        const auto to = static_cast<std::size_t>(x);
        const float bare = 1.0F - overlay.coverage[from];
        tone[to] = tone[to] * bare + overlay.light[from];
        warmth[to] *= bare;
    }
}

/// Calls row(y, tones, warmths) for every row of the finished frame.
template <typename Row>
void renderRows(const SimulatedFrame &frame, const Row &row)
{
    std::vector<Overlay> overlays;
    for (const SimulatedCard &card : frame.cards) {
        overlays.push_back(renderCard(frame, card));
    }
    const Scene scene(frame.width, frame.height, frame.seed, frame.clutter);
    const Film film(frame.width, frame.height, frame.seed, frame.film);
    const Light light(frame.width, frame.height, frame.seed, frame.light);
    forEachBand(frame.height, frame.workers, [&](int first, int end) {
        Scene bandScene = scene;
        Film bandFilm = film;
        Light bandLight = light;
        std::vector<float> tone(static_cast<std::size_t>(frame.width));
        std::vector<float> warmth(tone.size());
        for (int y = first; y < end; ++y) {
            bandScene.paintRow(y, tone, warmth);
            for (const Overlay &overlay : overlays) {
                layOver(overlay, y, tone, warmth);
            }
            bandLight.shadeRow(y, tone);
            bandFilm.developRow(y, tone);
            scanRow(tone, frame.scan);
            row(y, tone, warmth);
        }
    });
}

template <typename Sample>
Sample sampleOf(float tone, float white)
{
    // A half is added by itself: rounding functions keep the loops from becoming vector code.
    const float scaled = std::clamp(tone, 0.0F, 1.0F) * white;
    constexpr float half = 0.5F;
    return static_cast<Sample>(scaled + half);
}

} // namespace

CardGeometry geometryOf(const SimulatedFrame &frame, const SimulatedCard &card)
{
    LensDistortion lens;
    lens.middle = {frame.width / 2.0, frame.height / 2.0};
    lens.reach = std::hypot(lens.middle.x, lens.middle.y);
    lens.strength = frame.distortion;
    return {card.pose, card.code.size, lens};
}

RasterImage renderRaster(const SimulatedFrame &frame)
{
    RasterImage image;
    image.width = frame.width;
    image.height = frame.height;
    image.channels = 3;
    const auto columns = static_cast<std::size_t>(frame.width);
    image.samples.resize(columns * static_cast<std::size_t>(frame.height) * 3);
    const auto gain = static_cast<float>(frame.scan.gain);
    const float side = frame.film.negative ? -gain : gain;
    std::array<float, 3> colours{};
    std::ranges::transform(frame.scan.colours, colours.begin(),
                           [](double colour) { return static_cast<float>(colour); });
    renderRows(frame, [&](int y, std::span<const float> tone, std::span<const float> warmth) {
        std::uint16_t *out = &image.samples[static_cast<std::size_t>(y) * columns * 3];
        for (std::size_t x = 0; x < columns; ++x) {
            // Green carries most of the tone: the sum stays nearly what it was.
            const float warm = side * warmth[x];
            *out++ = sampleOf<std::uint16_t>(colours[0] * (tone[x] + warm), 65535.0F);
            *out++ = sampleOf<std::uint16_t>(colours[1] * (tone[x] - 0.2F * warm), 65535.0F);
            *out++ = sampleOf<std::uint16_t>(colours[2] * (tone[x] - 1.6F * warm), 65535.0F);
        }
    });
    sharpenScan(image, frame.scan.sharpening);
    return image;
}

LumaImage renderLuma(const SimulatedFrame &frame)
{
    LumaImage image;
    image.width = frame.width;
    image.height = frame.height;
    image.pixels.resize(static_cast<std::size_t>(frame.width) *
                        static_cast<std::size_t>(frame.height));
    const auto white = static_cast<float>(255.0 * frame.scan.luma());
    renderRows(frame, [&](int y, std::span<const float> tone, std::span<const float>) {
        std::ranges::transform(tone, image.row(y), [white](float value) {
            return sampleOf<std::uint8_t>(value, white);
        });
    });
    sharpenScan(image, frame.scan.sharpening);
    return image;
}

} // namespace quillmark::test
