// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FinderRuns.h"

#include <cmath>

namespace quillmark {

std::optional<float> finderModule(const FinderRuns &runs)
{
    const float total = runs[0] + runs[1] + runs[2] + runs[3] + runs[4];
    const float module = total / 7.0F;
    const float slack = 0.6F * module;
    const bool fits = std::abs(runs[2] - 3.0F * module) < 1.2F * module &&
                      std::abs(runs[0] - module) < slack && std::abs(runs[1] - module) < slack &&
                      std::abs(runs[3] - module) < slack && std::abs(runs[4] - module) < slack;
    return fits ? std::optional(module) : std::nullopt;
}

std::optional<std::array<float, 3>> PixelLine::crossings(int direction, float threshold,
                                                         float farthest) const
{
    std::array<float, 3> found{};
    std::size_t count = 0;
    float previous = static_cast<float>(at(0)) - threshold;
    const int limit = static_cast<int>(farthest);
    for (int i = 1; i <= limit && has(i * direction); ++i) {
        const float here = static_cast<float>(at(i * direction)) - threshold;
        if ((here < 0) != (previous < 0)) {
            found[count++] = static_cast<float>(i) - here / (here - previous);
            if (count == found.size()) {
                return found;
            }
        }
        previous = here;
    }
    return std::nullopt;
}

std::optional<FinderCrossing> crossFinder(const PixelLine &line, bool isDark, float threshold,
                                          float module)
{
    if ((static_cast<float>(line.at(0)) < threshold) != isDark) {
        return std::nullopt;
    }
    const auto back = line.crossings(-1, threshold, 6.5F * module);
    const auto forth = back ? line.crossings(1, threshold, 6.5F * module) : std::nullopt;
    if (!forth) {
        return std::nullopt;
    }
    const FinderRuns runs{(*back)[2] - (*back)[1], (*back)[1] - (*back)[0],
                          (*back)[0] + (*forth)[0], (*forth)[1] - (*forth)[0],
                          (*forth)[2] - (*forth)[1]};
    const std::optional<float> found = finderModule(runs);
    if (!found || *found > 1.7F * module || module > 1.7F * *found) {
        return std::nullopt;
    }
    return FinderCrossing{((*forth)[0] - (*back)[0]) / 2.0F, *found};
}

} // namespace quillmark
