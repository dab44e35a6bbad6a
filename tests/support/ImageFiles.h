// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace quillmark::test {

/// A picture to be written to a file: interleaved rows of 16-bit samples over their full
/// range (0 is black, 65535 white), one channel (grey) or three (RGB).
struct RasterImage {
    int width = 0;
    int height = 0;
    int channels = 3;
    std::vector<std::uint16_t> samples = {};

    std::uint16_t at(int x, int y, int channel) const
    {
        return samples[(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                        static_cast<std::size_t>(x)) *
                           static_cast<std::size_t>(channels) +
                       static_cast<std::size_t>(channel)];
    }
};

/// How the samples of a JPEG file stand for colours. Grey pictures are written as `grey`
/// where `yCbCr` is asked for.
enum class JpegColour { yCbCr, grey, rgb, cmyk, ycck };

struct JpegOptions {
    int quality = 90;
    bool progressive = false;
    int orientation = 1; ///< written as an EXIF block unless it is 1
    JpegColour colour = JpegColour::yCbCr;
    bool adobeMarker = true;   ///< for rgb, cmyk and ycck; with it, inks are stored inverted
    int chromaSubsampling = 2; ///< 1 to 4, across and down
    std::optional<int> chromaSubsamplingDown = {}; ///< 1 to 4, where it is another
    int restartRows = 0;        ///< rows of blocks between restart markers; 0 for none
    unsigned restartBlocks = 0; ///< the same in blocks of all components
    std::string app1 = {};      ///< content of an APP1 segment to write in place of our own
    bool arithmetic = false;    ///< arithmetic codes instead of Huffman's
    bool optimised = false;     ///< Huffman codes made for the picture
    bool separateScans = false; ///< one scan for each component, not progressive
    bool deepTables = false;    ///< quantisation tables of 16 bits where the quality is low
    std::string icc = {};       ///< content of ICC profile segments; not written where empty
};

/// Throws std::runtime_error where the file cannot be written.
void writeJpeg(const std::filesystem::path &file, const RasterImage &image,
               const JpegOptions &options = {});

/// The content of an APP1 segment that holds an orientation and nothing else. `type` is
/// the TIFF field type of the entry: 3 a 16-bit number, 4 a 32-bit one, 2 text.
std::string exifOrientationBlock(std::uint32_t value, std::uint16_t type = 3);

/// The two-dimensional code of group 3 is fax3Lines.
enum class TiffCompression {
    none,
    lzw,
    deflate,
    oldDeflate,
    packBits,
    jpeg,
    faxRuns,
    faxRunsInWords,
    fax3,
    fax3Lines,
    fax4,
    lzma,
    zstd,
    webp,
    lerc,
    jbig,
    pixarLog
};
enum class TiffPredictor { none = 1, horizontal = 2, floatingPoint = 3 };

/// What the samples of a TIFF file stand for. `automatic` is minIsBlack for one channel
/// and rgb for three. From an RGB picture, minIsBlack, minIsWhite and palette take the
/// first channel.
enum class TiffPhotometric {
    automatic,
    minIsBlack,
    minIsWhite,
    palette,
    rgb,
    cmyk,
    lab,
    iccLab,
    yCbCr
};

struct TiffOptions {
    int bits = 8; ///< 1 to 16, 24, 32 or 64 a sample
    TiffCompression compression = TiffCompression::none;
    TiffPredictor predictor = TiffPredictor::none;
    TiffPhotometric photometric = TiffPhotometric::automatic;
    int rowsPerStrip = 16; ///< 0 puts all rows into one strip
    int tileWidth = 0;     ///< a multiple of 16; 0 for strips
    int tileLength = 0;
    bool planarSeparate = false;
    bool bigTiff = false;
    bool bigEndian = false;
    int extraChannels = 0;               ///< filled with a picture of their own
    std::uint16_t extraKind = 0;         ///< unspecified, premultiplied alpha (1) or alpha (2)
    std::optional<int> orientation = {}; ///< 1 to 8; not written where not given
    bool floatingPoint = false; ///< with bits 16, 32 or 64: samples of floatBlack to floatWhite
    bool signedNumbers = false; ///< from 0 on, of half the range; with bits 8, 16 or 32
    float floatBlack = 0;
    float floatWhite = 1;
    std::optional<float> floatStray = {}; ///< stands in the place of every 50th sample
    bool reversedBits = false;            ///< of each byte of the pixels, which FillOrder 2 says
    bool directoryFirst = false;          ///< before the pixels; of several pages, writes one
    bool colouredPalette = false;         ///< else it runs from white to black
    int chromaSubsampling = 1;            ///< for yCbCr, unless in JPEG: 1, 2 or 4, across and down
    std::optional<int> chromaSubsamplingDown = {}; ///< where it is another
};

/// Throws std::runtime_error where the file cannot be written.
void writeTiff(const std::filesystem::path &file, const RasterImage &image,
               const TiffOptions &options = {});

/// One directory per page. Throws std::runtime_error where the file cannot be written.
void writeTiff(const std::filesystem::path &file, const std::vector<RasterImage> &pages,
               const TiffOptions &options = {});

struct ByteRange {
    std::uint64_t offset = 0;
    std::uint64_t size = 0;
};

/// Where the strips or tiles of the first page stand in the file, in the order of their
/// numbers. Throws std::runtime_error.
std::vector<ByteRange> tiffBlocks(const std::filesystem::path &file);

} // namespace quillmark::test
