// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <cstdint>

namespace quillmark {

/// The most pixels that a frame may have.
inline constexpr std::uint64_t maximumPixels = 1'000'000'000;

/// How much a file is believed before its data back it up: a frame of this many pixels may
/// be declared by a file of any size (it may be all that is left of a larger one).
inline constexpr std::uint64_t pixelsOnTrust = 64'000'000;

/// Whether a file of `fileBytes` can hold that many pixels, or enough of them to be worth
/// their memory, when its compression yields at most `pixelsPerByte`.
constexpr bool isPlausibleSize(std::uint64_t pixels, std::uint64_t fileBytes,
                               std::uint64_t pixelsPerByte)
{
    return pixels > 0 && pixels <= maximumPixels &&
           pixels <= pixelsOnTrust + std::min(fileBytes, maximumPixels) * pixelsPerByte;
}

} // namespace quillmark
