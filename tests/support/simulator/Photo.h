// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameDecoder.h"

#include <QByteArray>

#include <array>
#include <cstdint>

namespace quillmark::test {

enum class PhotoKind {
    screenshot, ///< whole pixels to a module, no noise
    scaled,     ///< a screenshot that was made larger or smaller
    phone,      ///< held towards a code on paper
    rotated,    ///< the same, at any angle
    inverted,   ///< light on dark, as in a program's dark mode
};

inline constexpr std::array allPhotoKinds{PhotoKind::screenshot, PhotoKind::scaled,
                                          PhotoKind::phone, PhotoKind::rotated,
                                          PhotoKind::inverted};

/// The enumerator's own name.
const char *nameOf(PhotoKind kind);

/// A small picture of a code of any content, such as people keep: versions 1 to 10 of all
/// levels, 150 to 1200 pixels wide.
struct Photo {
    PhotoKind kind = PhotoKind::screenshot;
    LumaImage luma;
    QByteArray content;
    int modules = 0;
    double modulePixels = 0;
};

/// The same photo for the same seed and index; kinds take turns.
Photo makePhoto(std::uint64_t seed, int index);

} // namespace quillmark::test
