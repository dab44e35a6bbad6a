// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/ImageFiles.h"

#include <QString>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace quillmark::test {

/// The slate's text.
QString slateText();

/// A frame with a slate of version 10 that has all levels and hues around the card, of a size
/// that is no multiple of any block.
RasterImage colourSlate();
RasterImage greySlate();

/// A picture as it is stored whose file is marked with an orientation (1 to 8): turned and
/// mirrored so that whoever reads it has to undo that.
RasterImage turned(const RasterImage &upright, int orientation);

/// A frame without a slate.
RasterImage blankFrame();

/// What is to become of a file.
enum class ZooOutcome {
    slate,   ///< it is decoded and its slate read
    noSlate, ///< it is decoded and has none
    refused, ///< imageDecodeFailed
};

/// A way of storing a scan, as scanners, labs and programs do.
struct ZooRow {
    std::string name; ///< letters and digits
    std::string how;  ///< in words
    std::function<void(const std::filesystem::path &)> write;
    ZooOutcome outcome = ZooOutcome::slate;
    double tolerance = 2; ///< of the decoded luma, in levels on average
    int bits = 8;         ///< as many as the stored samples keep
    std::uint32_t orientation = 1;
    std::function<RasterImage()> picture = colourSlate; ///< what is stored
};

void PrintTo(const ZooRow &row, std::ostream *out);

inline constexpr double anyLuma = 255; ///< a tolerance

std::vector<ZooRow> jpegCodingRows();
std::vector<ZooRow> jpegFileRows();
std::vector<ZooRow> tiffSampleRows();
std::vector<ZooRow> tiffCodingRows();
std::vector<ZooRow> tiffLayoutRows();
std::vector<ZooRow> tiffFileRows();
std::vector<ZooRow> oldTiffRows();

} // namespace quillmark::test
