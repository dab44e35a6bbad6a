// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/PictureDecoder.h"
#include "support/ImageFiles.h"

namespace quillmark::test {

/// A box that no picture of the tests fills.
inline constexpr PictureSize anySize{10000, 10000};

/// What a file of the picture, with no loss, decodes to at its own size.
PictureImage expectedPicture(const RasterImage &image);

/// How far two pictures of the same size are apart, in levels of a channel.
struct ColourDifference {
    double mean = 0;
    int greatest = 0;
};
ColourDifference difference(const PictureImage &a, const PictureImage &b);

/// The difference within rows `from` to `to`, the last one excluded.
ColourDifference difference(const PictureImage &a, const PictureImage &b, int from, int to);

/// Whether rows `from` to `to`, the last one excluded, are all mid-grey.
bool isMidGrey(const PictureImage &image, int from, int to);

} // namespace quillmark::test
