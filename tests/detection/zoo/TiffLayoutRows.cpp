// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// How strips, tiles and pages of a TIFF file are laid out.

#include "detection/zoo/Zoo.h"

#include <utility>

namespace quillmark::test {
namespace {

using Path = std::filesystem::path;

ZooRow tiff(const std::string &name, const std::string &how, const TiffOptions &options)
{
    ZooRow row{name, "TIFF, " + how,
               [options](const Path &file) { writeTiff(file, colourSlate(), options); }};
    row.bits = options.bits;
    return row;
}

std::vector<ZooRow> blockRows()
{
    return {
        tiff("rowsEach1", "strips of 1 row", {.rowsPerStrip = 1}),
        tiff("rowsEach3", "strips of 3 rows", {.rowsPerStrip = 3}),
        tiff("rowsEach100", "strips of 100 rows", {.rowsPerStrip = 100}),
        tiff("rowsMoreThanThere", "a strip of more rows than there are", {.rowsPerStrip = 5000}),
        tiff("tiles16", "tiles of 16x16", {.tileWidth = 16, .tileLength = 16}),
        tiff("tilesWide", "tiles of 256x16", {.tileWidth = 256, .tileLength = 16}),
        tiff("tilesHigh", "tiles of 16x256", {.tileWidth = 16, .tileLength = 256}),
        tiff("tileOne", "a single tile larger than the picture",
             {.tileWidth = 1024, .tileLength = 1024}),
        tiff("tilesPlanes", "tiles, planes apart",
             {.tileWidth = 64, .tileLength = 64, .planarSeparate = true}),
        tiff("planesOneStrip", "planes apart, one strip each",
             {.rowsPerStrip = 0, .planarSeparate = true}),
        tiff("directoryFirst", "the directory before the pixels", {.directoryFirst = true}),
    };
}

std::vector<ZooRow> orderRows()
{
    std::vector<ZooRow> rows;
    for (const bool bigTiff : {false, true}) {
        for (const bool bigEndian : {false, true}) {
            for (const int bits : {8, 16, 32}) {
                const std::string name = std::string(bigTiff ? "big" : "classic") +
                                         (bigEndian ? "BigEndian" : "LittleEndian") +
                                         std::to_string(bits);
                const std::string how = std::string(bigTiff ? "BigTIFF, " : "classic, ") +
                                        (bigEndian ? "big-endian, " : "little-endian, ") +
                                        std::to_string(bits) + " bits";
                rows.push_back(
                    tiff(name, how, {.bits = bits, .bigTiff = bigTiff, .bigEndian = bigEndian}));
            }
        }
    }
    return rows;
}

std::vector<ZooRow> orientationRows()
{
    std::vector<ZooRow> rows;
    for (int orientation = 1; orientation <= 8; ++orientation) {
        const std::string number = std::to_string(orientation);
        ZooRow row = tiff("orientation" + number, "orientation " + number, {});
        row.picture = [orientation] { return turned(colourSlate(), orientation); };
        row.write = [orientation, picture = row.picture](const Path &file) {
            writeTiff(file, picture(), {.orientation = orientation});
        };
        row.orientation = static_cast<std::uint32_t>(orientation);
        rows.push_back(std::move(row));
    }
    return rows;
}

ZooRow pages(const std::string &name, const std::string &how, ZooOutcome outcome,
             const std::vector<RasterImage (*)()> &pages)
{
    ZooRow row{name, "TIFF, " + how,
               [pages](const Path &file) {
                   std::vector<RasterImage> images;
                   for (const auto &page : pages) {
                       images.push_back(page());
                   }
                   writeTiff(file, images);
               },
               outcome};
    row.picture = pages.at(0);
    return row;
}

RasterImage thumbnail()
{
    return {64, 60, 3, std::vector<std::uint16_t>(std::size_t{64} * 60 * 3, 40000)};
}

RasterImage infrared()
{
    RasterImage image = blankFrame();
    image.channels = 1;
    image.samples.resize(image.samples.size() / 3);
    return image;
}

std::vector<ZooRow> pageRows()
{
    return {
        pages("pages", "two pages, the slate on the first", ZooOutcome::slate,
              {colourSlate, blankFrame}),
        pages("infraredBehind", "infrared on a page behind", ZooOutcome::slate,
              {colourSlate, infrared}),
        pages("thumbnailBehind", "a thumbnail behind", ZooOutcome::slate, {colourSlate, thumbnail}),
        pages("secondPage", "two pages, the slate on the second", ZooOutcome::noSlate,
              {blankFrame, colourSlate}),
        pages("thumbnailFirst", "a thumbnail first", ZooOutcome::noSlate, {thumbnail, colourSlate}),
    };
}

} // namespace

std::vector<ZooRow> tiffLayoutRows()
{
    std::vector<ZooRow> rows;
    for (std::vector<ZooRow> some : {blockRows(), orderRows(), orientationRows(), pageRows()}) {
        rows.insert(rows.end(), some.begin(), some.end());
    }
    return rows;
}

} // namespace quillmark::test
