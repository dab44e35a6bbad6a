// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameDecoder.h"
#include "support/ImageFiles.h"

namespace quillmark::test {

/// A picture with every level from black to white, all hues and hard edges, of a size that
/// is no multiple of any block.
RasterImage colourPicture();
RasterImage greyPicture();

/// The picture within a part of the range, both ends given as shares of it.
RasterImage squeezed(RasterImage image, double black, double white);

/// What a file of the picture in the given bit depth, with no other loss, decodes to.
LumaImage expectedLuma(const RasterImage &image, int bits = 8);

/// How far two images are apart in levels; both are of the same size.
struct LumaDifference {
    double mean = 0;
    int greatest = 0;
};
LumaDifference difference(const LumaImage &a, const LumaImage &b);

/// The difference within rows `from` to `to`, the last one excluded.
LumaDifference difference(const LumaImage &a, const LumaImage &b, int from, int to);

/// Whether rows `from` to `to`, the last one excluded, are all mid-grey.
bool isMidGrey(const LumaImage &image, int from, int to);

} // namespace quillmark::test
