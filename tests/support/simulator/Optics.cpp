// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/Optics.h"

#include "support/simulator/ParallelRows.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <span>

namespace quillmark::test {
namespace {

constexpr double negligibleBlur = 0.05; // pixels

std::vector<float> gaussianKernel(double sigma)
{
    const int reach = blurReach(sigma);
    std::vector<float> kernel;
    double sum = 0;
    for (int i = -reach; i <= reach; ++i) {
        const double weight = std::exp(-i * i / (2.0 * sigma * sigma));
        kernel.push_back(static_cast<float>(weight));
        sum += weight;
    }
    for (float &weight : kernel) {
        weight = static_cast<float>(weight / sum);
    }
    return kernel;
}

void addScaled(std::span<float> to, std::span<const float> from, float factor)
{
    for (std::size_t i = 0; i < to.size(); ++i) {
        to[i] += factor * from[i];
    }
}

/// Beyond its edges the plane is empty; renderCard leaves a margin for that.
void blurPlane(std::vector<float> &plane, int width, int height, const std::vector<float> &kernel,
               int workers)
{
    const int reach = static_cast<int>(kernel.size() / 2);
    const auto columns = static_cast<std::size_t>(width);
    const auto rowOf = [columns](std::vector<float> &of, int y) {
        return std::span<float>(of).subspan(static_cast<std::size_t>(y) * columns, columns);
    };

    const auto index = [reach](int shift) {
        const int position = shift + reach;
        return static_cast<std::size_t>(position);
    };
    std::vector<float> down(plane.size());
    forEachBand(height, workers, [&](int first, int end) {
        for (int y = first; y < end; ++y) {
            const int from = std::max(0, y - reach);
            const int to = std::min(height - 1, y + reach);
            for (int source = from; source <= to; ++source) {
                addScaled(rowOf(down, y), rowOf(plane, source), kernel[index(source - y)]);
            }
        }
    });
    forEachBand(height, workers, [&](int first, int end) {
        for (int y = first; y < end; ++y) {
            const std::span<float> to = rowOf(plane, y);
            const std::span<const float> from = rowOf(down, y);
            std::ranges::fill(to, 0.0F);
            for (int shift = -reach; shift <= reach; ++shift) {
                const auto skip = static_cast<std::size_t>(std::abs(shift));
                if (skip >= columns) {
                    continue;
                }
                const float weight = kernel[index(shift)];
                const std::size_t length = columns - skip;
                if (shift < 0) {
                    addScaled(to.subspan(skip), from.first(length), weight);
                } else {
                    addScaled(to.first(length), from.subspan(skip), weight);
                }
            }
        }
    });
}

/// The mean along a short line around each pixel, sampled once a pixel.
void shakePlane(std::vector<float> &plane, int width, int height, const Motion &motion, int workers)
{
    const double angle = motion.direction * std::numbers::pi / 180.0;
    const int steps = static_cast<int>(std::ceil(motion.length)) + 1;
    const std::vector<float> still = plane;
    const auto at = [&still, width, height](int x, int y) {
        const bool inside = x >= 0 && y >= 0 && x < width && y < height;
        return inside ? still[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                              static_cast<std::size_t>(x)]
                      : 0.0F;
    };
    forEachBand(height, workers, [&](int first, int end) {
        for (int y = first; y < end; ++y) {
            const std::span<float> row = std::span<float>(plane).subspan(
                static_cast<std::size_t>(y) * static_cast<std::size_t>(width),
                static_cast<std::size_t>(width));
            std::ranges::fill(row, 0.0F);
            for (int i = 0; i < steps; ++i) {
                // The same place between pixels for the whole row.
                const double way = motion.length * ((i + 0.5) / steps - 0.5);
                const double shiftX = way * std::cos(angle);
                const double shiftY = way * std::sin(angle);
                const int column = static_cast<int>(std::floor(shiftX));
                const int line = static_cast<int>(std::floor(shiftY));
                const auto along = static_cast<float>(shiftX - column);
                const auto down = static_cast<float>(shiftY - line);
                for (int x = 0; x < width; ++x) {
                    const int left = x + column;
                    const int top = y + line;
                    const float upper = at(left, top) * (1 - along) + at(left + 1, top) * along;
                    const float lower =
                        at(left, top + 1) * (1 - along) + at(left + 1, top + 1) * along;
                    row[static_cast<std::size_t>(x)] +=
                        (upper * (1 - down) + lower * down) / static_cast<float>(steps);
                }
            }
        }
    });
}

} // namespace

int blurReach(double sigmaPixels)
{
    return sigmaPixels <= negligibleBlur ? 0 : static_cast<int>(std::ceil(3.0 * sigmaPixels));
}

int blurReach(const Motion &motion)
{
    return motion.length <= 0 ? 0 : static_cast<int>(std::ceil(motion.length / 2)) + 1;
}

int blurReach(const Halation &halation)
{
    return halation.share <= 0 ? 0 : blurReach(halation.spread);
}

void defocus(Overlay &overlay, double sigmaPixels, int workers)
{
    if (blurReach(sigmaPixels) == 0) {
        return;
    }
    const std::vector<float> kernel = gaussianKernel(sigmaPixels);
    blurPlane(overlay.coverage, overlay.width, overlay.height, kernel, workers);
    blurPlane(overlay.light, overlay.width, overlay.height, kernel, workers);
}

void shake(Overlay &overlay, const Motion &motion, int workers)
{
    if (motion.length > 0) {
        shakePlane(overlay.coverage, overlay.width, overlay.height, motion, workers);
        shakePlane(overlay.light, overlay.width, overlay.height, motion, workers);
    }
}

void addHalation(Overlay &overlay, const Halation &halation, int workers)
{
    if (blurReach(halation) == 0) {
        return;
    }
    const auto share = static_cast<float>(halation.share);
    const std::vector<float> kernel = gaussianKernel(halation.spread);
    for (std::vector<float> *plane : {&overlay.coverage, &overlay.light}) {
        std::vector<float> spread = *plane;
        blurPlane(spread, overlay.width, overlay.height, kernel, workers);
        for (std::size_t i = 0; i < spread.size(); ++i) {
            (*plane)[i] += share * (spread[i] - (*plane)[i]);
        }
    }
}

} // namespace quillmark::test
