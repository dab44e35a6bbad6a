// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FrameCopy.h"

#include "detection/Sharpen.h"
#include "detection/TwoThreads.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <iterator>
#include <utility>

namespace quillmark {
namespace {

constexpr std::size_t worthAThread = 300'000; // pixels: about a millisecond of reading

std::vector<QrSymbol> readLightOnDark(LumaImage image, QrEffort effort)
{
    invert(image);
    return decodeQrSymbols(image, effort);
}

std::vector<QrSymbol> readBoth(const LumaImage &image, QrEffort effort)
{
    const auto asItIs = [&] { return decodeQrSymbols(image, effort); };
    const auto inverted = [&] { return readLightOnDark(image, effort); };
    auto [symbols, negatives] = image.pixels.size() < worthAThread ? std::pair(asItIs(), inverted())
                                                                   : runBoth(asItIs, inverted);
    std::ranges::move(negatives, std::back_inserter(symbols));
    return symbols;
}

} // namespace

std::vector<QrSymbol> readCopy(const FrameCopy &copy, QrEffort effort) noexcept
try {
    std::vector<QrSymbol> symbols = readBoth(copy.image, effort);
    for (QrSymbol &symbol : symbols) {
        for (PixelPoint &corner : symbol.corners) {
            corner = {corner.x * copy.scale, corner.y * copy.scale};
        }
    }
    return symbols;
} catch (const std::exception &) {
    // Out of memory or of threads.
    return {};
}

} // namespace quillmark
