// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/SlateFrame.h"

#include "support/simulator/Optics.h"
#include "support/simulator/ParallelRows.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <type_traits>

namespace quillmark::test {
namespace {

std::vector<Overlay> renderCards(const SimulatedFrame &frame)
{
    std::vector<Overlay> overlays;
    for (const SimulatedCard &card : frame.cards) {
        const double sigma = card.blur * card.pose.modulePixels;
        Overlay overlay = renderCard(card.code, card.pose, frame.width, frame.height,
                                     blurReach(sigma), frame.seed, frame.workers);
        defocus(overlay, sigma, frame.workers);
        overlays.push_back(std::move(overlay));
    }
    return overlays;
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

/// Light falling unevenly on everything, the card included: brightest somewhere, darker by
/// up to a quarter towards the far corner.
class Illumination
{
public:
    Illumination(const SimulatedFrame &frame)
        : m_noise(frame.seed ^ 0x11U, static_cast<float>(std::max(frame.width, frame.height)))
    {}

    void shadeRow(int y, std::span<float> tone)
    {
        m_light.assign(tone.size(), 0.87F);
        m_noise.add(y, 0.13F, m_light);
        for (std::size_t x = 0; x < tone.size(); ++x) {
            tone[x] *= m_light[x];
        }
    }

private:
    RowNoise m_noise;
    std::vector<float> m_light;
};

/// Calls row(y, tones, warmths) for every row of the finished frame.
template <typename Row>
void renderRows(const SimulatedFrame &frame, const Row &row)
{
    const std::vector<Overlay> overlays = renderCards(frame);
    const Scene scene(frame.width, frame.height, frame.seed, frame.clutter);
    const Film film(frame.width, frame.height, frame.seed, frame.film);
    const Illumination illumination(frame);
    forEachBand(frame.height, frame.workers, [&](int first, int end) {
        Scene bandScene = scene;
        Film bandFilm = film;
        Illumination bandLight = illumination;
        std::vector<float> tone(static_cast<std::size_t>(frame.width));
        std::vector<float> warmth(tone.size());
        for (int y = first; y < end; ++y) {
            bandScene.paintRow(y, tone, warmth);
            for (const Overlay &overlay : overlays) {
                layOver(overlay, y, tone, warmth);
            }
            bandLight.shadeRow(y, tone);
            bandFilm.developRow(y, tone);
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

RasterImage renderRaster(const SimulatedFrame &frame)
{
    RasterImage image;
    image.width = frame.width;
    image.height = frame.height;
    image.channels = 3;
    const auto columns = static_cast<std::size_t>(frame.width);
    image.samples.resize(columns * static_cast<std::size_t>(frame.height) * 3);
    const float side = frame.film.negative ? -1.0F : 1.0F;
    renderRows(frame, [&](int y, std::span<const float> tone, std::span<const float> warmth) {
        std::uint16_t *out = &image.samples[static_cast<std::size_t>(y) * columns * 3];
        for (std::size_t x = 0; x < columns; ++x) {
            // Green carries most of the tone: the sum stays nearly what it was.
            const float warm = side * warmth[x];
            *out++ = sampleOf<std::uint16_t>(tone[x] + warm, 65535.0F);
            *out++ = sampleOf<std::uint16_t>(tone[x] - 0.2F * warm, 65535.0F);
            *out++ = sampleOf<std::uint16_t>(tone[x] - 1.6F * warm, 65535.0F);
        }
    });
    return image;
}

LumaImage renderLuma(const SimulatedFrame &frame)
{
    LumaImage image;
    image.width = frame.width;
    image.height = frame.height;
    image.pixels.resize(static_cast<std::size_t>(frame.width) *
                        static_cast<std::size_t>(frame.height));
    renderRows(frame, [&](int y, std::span<const float> tone, std::span<const float>) {
        std::ranges::transform(tone, image.row(y),
                               [](float value) { return sampleOf<std::uint8_t>(value, 255.0F); });
    });
    return image;
}

} // namespace quillmark::test
