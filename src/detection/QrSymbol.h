// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <array>
#include <optional>

namespace quillmark {

/// A place in a picture, in pixels; (0, 0) is the top left corner of the top left pixel.
struct PixelPoint {
    double x = 0;
    double y = 0;
};

/// The corners of a QR code, in the order of the code's own top left, top right, bottom
/// right and bottom left: clockwise on the picture, unless the code is mirrored.
using SymbolCorners = std::array<PixelPoint, 4>;

/// A QR code that was seen.
struct QrSymbol {
    /// Its text; nothing where the code could not be understood.
    std::optional<QString> text;
    SymbolCorners corners;
};

} // namespace quillmark
