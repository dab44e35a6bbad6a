// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// How the picture in a JPEG file is coded.

#include "detection/zoo/Zoo.h"

#include <utility>

namespace quillmark::test {
namespace {

using Path = std::filesystem::path;

ZooRow jpeg(std::string name, const std::string &how, JpegOptions options, double tolerance = 2)
{
    return {std::move(name), "JPEG, " + how,
            [options = std::move(options)](const Path &file) {
                writeJpeg(file, colourSlate(), options);
            },
            ZooOutcome::slate, tolerance};
}

RasterImage negativeSlate()
{
    RasterImage image = colourSlate();
    for (std::uint16_t &sample : image.samples) {
        sample = static_cast<std::uint16_t>(65535 - sample);
    }
    return image;
}

std::vector<ZooRow> colourRows()
{
    using enum JpegColour;
    return {
        jpeg("grey", "grey", {.colour = grey}),
        jpeg("yCbCr444", "Y'CbCr 4:4:4", {.chromaSubsampling = 1}),
        jpeg("yCbCr422", "Y'CbCr 4:2:2", {.chromaSubsampling = 2, .chromaSubsamplingDown = 1}),
        jpeg("yCbCr420", "Y'CbCr 4:2:0", {.chromaSubsampling = 2}),
        jpeg("yCbCr440", "Y'CbCr 4:4:0", {.chromaSubsampling = 1, .chromaSubsamplingDown = 2}),
        jpeg("yCbCr411", "Y'CbCr 4:1:1", {.chromaSubsampling = 4, .chromaSubsamplingDown = 1}),
        jpeg("yCbCr410", "Y'CbCr 4:1:0", {.chromaSubsampling = 4, .chromaSubsamplingDown = 2}),
        jpeg("yCbCr441", "Y'CbCr 4:4:1", {.chromaSubsampling = 1, .chromaSubsamplingDown = 4}),
        jpeg("yCbCr311", "chroma a third as wide",
             {.chromaSubsampling = 3, .chromaSubsamplingDown = 1}),
        jpeg("rgb", "RGB with Adobe's marker", {.colour = rgb}),
        jpeg("rgbUnmarked", "RGB told by its component numbers",
             {.colour = rgb, .adobeMarker = false}),
        jpeg("cmyk", "CMYK stored inverted with Adobe's marker", {.colour = cmyk}),
        jpeg("cmykUnmarked", "CMYK without a marker", {.colour = cmyk, .adobeMarker = false}),
        jpeg("ycck", "YCCK with Adobe's marker", {.colour = ycck}),
        jpeg("ycck444", "YCCK 4:4:4", {.colour = ycck, .chromaSubsampling = 1}),
    };
}

std::vector<ZooRow> processRows()
{
    using enum JpegColour;
    return {
        jpeg("progressiveGrey", "progressive grey", {.progressive = true, .colour = grey}),
        jpeg("progressive420", "progressive 4:2:0", {.progressive = true}),
        jpeg("progressive444", "progressive 4:4:4", {.progressive = true, .chromaSubsampling = 1}),
        jpeg("progressiveRgb", "progressive RGB", {.progressive = true, .colour = rgb}),
        jpeg("progressiveCmyk", "progressive CMYK", {.progressive = true, .colour = cmyk}),
        jpeg("progressiveYcck", "progressive YCCK", {.progressive = true, .colour = ycck}),
        jpeg("progressiveRestart", "progressive with restart markers",
             {.progressive = true, .restartRows = 1}),
        jpeg("arithmetic", "arithmetic codes", {.arithmetic = true}),
        jpeg("arithmeticGrey", "arithmetic codes, grey", {.colour = grey, .arithmetic = true}),
        jpeg("arithmeticProgressive", "arithmetic codes, progressive",
             {.progressive = true, .arithmetic = true}),
        jpeg("arithmeticRestart", "arithmetic codes with restart markers",
             {.restartRows = 1, .arithmetic = true}),
        jpeg("optimised", "Huffman codes made for the picture", {.optimised = true}),
        jpeg("restartRow", "a restart marker after each row of blocks", {.restartRows = 1}),
        jpeg("restartBlock", "a restart marker after each block", {.restartBlocks = 1}),
        jpeg("restartSome", "a restart marker after every seventh block", {.restartBlocks = 7}),
        jpeg("separateScans", "a scan for each component", {.separateScans = true}),
        jpeg("separateScans444", "a scan for each component, 4:4:4",
             {.chromaSubsampling = 1, .separateScans = true}),
        jpeg("quality100", "quality 100", {.quality = 100}, 1),
        jpeg("quality50", "quality 50", {.quality = 50}, 6),
        jpeg("quality20", "quality 20", {.quality = 20}, 12),
        jpeg("deepTables", "quality 5, quantisation in 16 bits", {.quality = 5, .deepTables = true},
             20),
    };
}

std::vector<ZooRow> orientationRows()
{
    std::vector<ZooRow> rows;
    for (int orientation = 1; orientation <= 8; ++orientation) {
        ZooRow row = jpeg("orientation" + std::to_string(orientation),
                          "orientation " + std::to_string(orientation) + " in EXIF", {});
        row.write = [orientation](const Path &file) {
            writeJpeg(file, turned(colourSlate(), orientation), {.orientation = orientation});
        };
        row.orientation = static_cast<std::uint32_t>(orientation);
        row.picture = [orientation] { return turned(colourSlate(), orientation); };
        rows.push_back(std::move(row));
    }
    return rows;
}

ZooRow negativeRow()
{
    ZooRow row = jpeg("negative", "a negative as it is on the film", {});
    row.picture = negativeSlate;
    row.write = [](const Path &file) { writeJpeg(file, negativeSlate()); };
    return row;
}

} // namespace

std::vector<ZooRow> jpegCodingRows()
{
    std::vector<ZooRow> rows;
    for (std::vector<ZooRow> some : {colourRows(), processRows(), orientationRows()}) {
        rows.insert(rows.end(), some.begin(), some.end());
    }
    rows.push_back(negativeRow());
    return rows;
}

} // namespace quillmark::test
