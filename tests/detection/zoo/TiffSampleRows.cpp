// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// What the samples of a TIFF file are.

#include "detection/zoo/Zoo.h"

#include <utility>

namespace quillmark::test {
namespace {

using Path = std::filesystem::path;

ZooRow tiff(const std::string &name, const std::string &how, const TiffOptions &options,
            bool grey = false)
{
    ZooRow row{name, "TIFF, " + how, {}};
    row.picture = grey ? greySlate : colourSlate;
    row.write = [options, picture = row.picture](const Path &file) {
        writeTiff(file, picture(), options);
    };
    row.bits = options.bits;
    return row;
}

ZooRow greyTiff(const std::string &name, const std::string &how, const TiffOptions &options)
{
    return tiff(name, how, options, true);
}

ZooRow refused(ZooRow row)
{
    row.outcome = ZooOutcome::refused;
    return row;
}

/// For samples that use half of their range, which is stretched as a dark scan's would be.
ZooRow stretched(ZooRow row)
{
    row.tolerance = anyLuma;
    return row;
}

std::vector<ZooRow> greyRows()
{
    using enum TiffPhotometric;
    return {
        greyTiff("grey1", "1 bit grey", {.bits = 1}),
        greyTiff("grey2", "2 bit grey", {.bits = 2}),
        greyTiff("grey3", "3 bit grey", {.bits = 3}),
        greyTiff("grey4", "4 bit grey", {.bits = 4}),
        greyTiff("grey6", "6 bit grey", {.bits = 6}),
        greyTiff("grey8", "8 bit grey", {.bits = 8}),
        greyTiff("grey10", "10 bit grey", {.bits = 10}),
        greyTiff("grey12", "12 bit grey", {.bits = 12}),
        greyTiff("grey14", "14 bit grey", {.bits = 14}),
        greyTiff("grey16", "16 bit grey", {.bits = 16}),
        greyTiff("grey24", "24 bit grey", {.bits = 24}),
        greyTiff("grey32", "32 bit grey", {.bits = 32}),
        greyTiff("inverted1", "1 bit grey, 0 is white", {.bits = 1, .photometric = minIsWhite}),
        greyTiff("inverted4", "4 bit grey, 0 is white", {.bits = 4, .photometric = minIsWhite}),
        greyTiff("inverted8", "8 bit grey, 0 is white", {.bits = 8, .photometric = minIsWhite}),
        greyTiff("inverted12", "12 bit grey, 0 is white", {.bits = 12, .photometric = minIsWhite}),
        greyTiff("inverted16", "16 bit grey, 0 is white", {.bits = 16, .photometric = minIsWhite}),
        greyTiff("half", "grey in floating point of 16 bits", {.bits = 16, .floatingPoint = true}),
        greyTiff("float", "grey in floating point of 32 bits", {.bits = 32, .floatingPoint = true}),
        greyTiff("double", "grey in floating point of 64 bits",
                 {.bits = 64, .floatingPoint = true}),
        greyTiff("floatTo255", "grey in floating point up to 255",
                 {.bits = 32, .floatingPoint = true, .floatWhite = 255}),
        greyTiff("greyAlpha", "grey with alpha", {.extraChannels = 1, .extraKind = 2}),
        greyTiff("greyInfrared", "16 bit grey with infrared", {.bits = 16, .extraChannels = 1}),
        stretched(greyTiff("signed16", "16 bit signed grey", {.bits = 16, .signedNumbers = true})),
        stretched(greyTiff("signed8", "8 bit signed grey", {.bits = 8, .signedNumbers = true})),
        greyTiff("palette1", "palette of 2 colours", {.bits = 1, .photometric = palette}),
        greyTiff("palette2", "palette of 4 colours", {.bits = 2, .photometric = palette}),
        greyTiff("palette4", "palette of 16 colours", {.bits = 4, .photometric = palette}),
        greyTiff("palette8", "palette of 256 colours", {.bits = 8, .photometric = palette}),
        refused(greyTiff("grey64", "64 bit grey", {.bits = 64})),
        refused(greyTiff("palette16", "palette of 65536 colours",
                         {.bits = 16, .photometric = palette})),
    };
}

std::vector<ZooRow> colourRows()
{
    using enum TiffPhotometric;
    return {
        tiff("rgb4", "RGB of 4 bits", {.bits = 4}),
        tiff("rgb8", "RGB of 8 bits", {.bits = 8}),
        tiff("rgb10", "RGB of 10 bits", {.bits = 10}),
        tiff("rgb12", "RGB of 12 bits", {.bits = 12}),
        tiff("rgb14", "RGB of 14 bits", {.bits = 14}),
        tiff("rgb16", "RGB of 16 bits", {.bits = 16}),
        tiff("rgb24", "RGB of 24 bits", {.bits = 24}),
        tiff("rgb32", "RGB of 32 bits", {.bits = 32}),
        tiff("rgbHalf", "RGB in floating point of 16 bits", {.bits = 16, .floatingPoint = true}),
        tiff("rgbFloat", "RGB in floating point of 32 bits", {.bits = 32, .floatingPoint = true}),
        tiff("rgbDouble", "RGB in floating point of 64 bits", {.bits = 64, .floatingPoint = true}),
        tiff("rgbAlpha", "RGB with alpha", {.extraChannels = 1, .extraKind = 2}),
        tiff("rgbPremultiplied", "RGB with premultiplied alpha",
             {.extraChannels = 1, .extraKind = 1}),
        tiff("rgbAlpha16", "RGB of 16 bits with alpha",
             {.bits = 16, .extraChannels = 1, .extraKind = 2}),
        tiff("rgbInfrared", "RGB with infrared", {.extraChannels = 1}),
        tiff("rgbInfrared16", "RGB of 16 bits with infrared", {.bits = 16, .extraChannels = 1}),
        tiff("rgbInfraredApart", "RGB of 16 bits with infrared, planes apart",
             {.bits = 16, .planarSeparate = true, .extraChannels = 1}),
        tiff("rgbTwoMore", "RGB of 16 bits with two more", {.bits = 16, .extraChannels = 2}),
        stretched(
            tiff("rgbSigned16", "RGB of 16 bits, signed", {.bits = 16, .signedNumbers = true})),
        tiff("cmyk8", "CMYK of 8 bits", {.photometric = cmyk}),
        tiff("cmyk16", "CMYK of 16 bits", {.bits = 16, .photometric = cmyk}),
        tiff("cmykApart", "CMYK, planes apart", {.photometric = cmyk, .planarSeparate = true}),
        tiff("cmykAlpha", "CMYK with a spot colour", {.photometric = cmyk, .extraChannels = 1}),
        tiff("yCbCr444", "Y'CbCr 4:4:4", {.photometric = yCbCr}),
        tiff("yCbCr422", "Y'CbCr 4:2:2",
             {.photometric = yCbCr, .chromaSubsampling = 2, .chromaSubsamplingDown = 1}),
        tiff("yCbCr420", "Y'CbCr 4:2:0", {.photometric = yCbCr, .chromaSubsampling = 2}),
        tiff("yCbCr440", "Y'CbCr 4:4:0",
             {.photometric = yCbCr, .chromaSubsampling = 1, .chromaSubsamplingDown = 2}),
        tiff("yCbCr411", "Y'CbCr 4:1:1",
             {.photometric = yCbCr, .chromaSubsampling = 4, .chromaSubsamplingDown = 1}),
        tiff("yCbCr410", "Y'CbCr, chroma a quarter each way",
             {.photometric = yCbCr, .chromaSubsampling = 4}),
        tiff("yCbCr16", "Y'CbCr 4:4:4 of 16 bits", {.bits = 16, .photometric = yCbCr}),
        tiff("yCbCr420Tiles", "Y'CbCr 4:2:0 in tiles",
             {.photometric = yCbCr, .tileWidth = 64, .tileLength = 48, .chromaSubsampling = 2}),
        tiff("yCbCr420Lzw", "Y'CbCr 4:2:0 in LZW",
             {.compression = TiffCompression::lzw,
              .photometric = yCbCr,
              .rowsPerStrip = 0,
              .chromaSubsampling = 2}),
        // L* of a coloured picture is not its luma.
        stretched(tiff("lab8", "L*a*b* of 8 bits", {.photometric = lab})),
        stretched(tiff("lab16", "L*a*b* of 16 bits", {.bits = 16, .photometric = lab})),
        stretched(tiff("iccLab8", "ICC L*a*b* of 8 bits", {.photometric = iccLab})),
        stretched(tiff("iccLab16", "ICC L*a*b* of 16 bits", {.bits = 16, .photometric = iccLab})),
    };
}

} // namespace

std::vector<ZooRow> tiffSampleRows()
{
    std::vector<ZooRow> rows = greyRows();
    std::vector<ZooRow> colours = colourRows();
    rows.insert(rows.end(), colours.begin(), colours.end());
    return rows;
}

} // namespace quillmark::test
