// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/Optics.h"

#include "support/simulator/ParallelRows.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
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

} // namespace

int blurReach(double sigmaPixels)
{
    return sigmaPixels <= negligibleBlur ? 0 : static_cast<int>(std::ceil(3.0 * sigmaPixels));
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

} // namespace quillmark::test
