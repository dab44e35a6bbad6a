// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// What stands in a JPEG file beside its picture, and what is no JPEG file after all.

#include "detection/zoo/RawFrames.h"
#include "support/TempDir.h"

#include <string_view>
#include <utility>

namespace quillmark::test {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;
using Path = std::filesystem::path;

/// Makes the content of a file.
using Bytes = std::function<std::string()>;

ZooRow row(std::string name, std::string how, const Bytes &bytes,
           ZooOutcome outcome = ZooOutcome::slate)
{
    return {std::move(name), std::move(how),
            [bytes](const Path &file) { writeBytes(file, bytes()); }, outcome,
            outcome == ZooOutcome::slate ? 2 : anyLuma};
}

std::string jpegOf(const RasterImage &image, const JpegOptions &options = {})
{
    const TempDir folder;
    writeJpeg(folder / "a", image, options);
    return readFile(folder / "a");
}

/// Markers and the segments behind them: ITU-T T.81, annex B.
std::string segment(unsigned char marker, std::string_view content)
{
    const std::size_t length = content.size() + 2;
    return "\xFF"s + static_cast<char>(marker) + static_cast<char>(length >> 8U) +
           static_cast<char>(length & 0xFFU) + std::string(content);
}

constexpr unsigned char app0 = 0xE0;
constexpr unsigned char app1 = 0xE1;
constexpr unsigned char app2 = 0xE2;
constexpr unsigned char app13 = 0xED;
constexpr unsigned char comment = 0xFE;
constexpr std::size_t behindStart = 2;
constexpr std::size_t behindJfif = 20;

std::string inserted(std::size_t at, const std::string &segments)
{
    return jpegOf(colourSlate()).insert(at, segments);
}

std::string withoutJfif(std::string bytes)
{
    return bytes.erase(behindStart, behindJfif - behindStart);
}

std::string withoutSegments(std::string bytes, unsigned char marker)
{
    std::size_t at = behindStart;
    while (static_cast<unsigned char>(bytes.at(at + 1)) != 0xDA) {
        const std::size_t length = 2 + (static_cast<unsigned char>(bytes.at(at + 2)) << 8U |
                                        static_cast<unsigned char>(bytes.at(at + 3)));
        if (static_cast<unsigned char>(bytes[at + 1]) == marker) {
            bytes.erase(at, length);
        } else {
            at += length;
        }
    }
    return bytes;
}

RasterImage thumbnail()
{
    return {16, 12, 3, std::vector<std::uint16_t>(16 * 12 * 3, 30000)};
}

/// An EXIF block with a second directory that has a small picture, as cameras write it.
std::string exifWithThumbnail()
{
    RawTiff tiff;
    const std::string picture = jpegOf(thumbnail());
    const std::uint64_t place = tiff.add(picture);
    const std::uint64_t first =
        tiff.addDirectory({{271, TiffType::ascii, {'L', 'a', 'b', 0}}, {274, {}, {1}}});
    using enum TiffType;
    tiff.setNext(first, tiff.addDirectory({{259, shortNumber, {6}},
                                           {513, longNumber, {place}},
                                           {514, longNumber, {picture.size()}}}));
    return "Exif\0\0"s + tiff.bytes();
}

std::string bigEndianExif()
{
    RawTiff tiff({.bigEndian = true});
    tiff.addDirectory({{274, TiffType::shortNumber, {1}}});
    return "Exif\0\0"s + tiff.bytes();
}

std::string withoutTables(const std::string &bytes)
{
    constexpr unsigned char huffmanTables = 0xC4;
    return withoutSegments(bytes, huffmanTables);
}

/// Fill bytes are allowed before every marker.
std::string withFillBytes()
{
    std::string bytes = jpegOf(colourSlate());
    const std::size_t frame = bytes.find("\xFF\xC0");
    bytes.insert(frame, 7, '\xFF');
    return bytes.insert(behindStart, 300, '\xFF');
}

/// Sets a byte of the frame header, counted from its marker.
std::string changedFrame(std::size_t at, std::initializer_list<unsigned char> values)
{
    std::string bytes = jpegOf(colourSlate());
    std::size_t frame = bytes.find("\xFF\xC0");
    for (const unsigned char value : values) {
        bytes.at(frame++ + at) = static_cast<char>(value);
    }
    return bytes;
}

std::vector<ZooRow> segmentRows()
{
    return {
        row("exifThumbnail", "JPEG, EXIF with a thumbnail",
            [] { return inserted(behindStart, segment(app1, exifWithThumbnail())); }),
        row("exifBehindJfif", "JPEG, JFIF and then EXIF",
            [] { return inserted(behindJfif, segment(app1, exifWithThumbnail())); }),
        row("exifAlone", "JPEG, EXIF without JFIF",
            [] {
                return withoutJfif(jpegOf(colourSlate()))
                    .insert(behindStart, segment(app1, exifWithThumbnail()));
            }),
        row("exifBigEndian", "JPEG, EXIF in big-endian order",
            [] { return inserted(behindJfif, segment(app1, bigEndianExif())); }),
        row("exifBroken", "JPEG, EXIF of random bytes",
            [] {
                return inserted(behindJfif, segment(app1, "Exif\0\0II*\0\xFF\xFF\xFF\xFFxyz"s));
            }),
        row("exifTwice", "JPEG, EXIF twice",
            [] {
                return inserted(behindJfif, segment(app1, bigEndianExif()) +
                                                segment(app1, exifWithThumbnail()));
            }),
        row("bare", "JPEG, neither JFIF nor EXIF",
            [] { return withoutJfif(jpegOf(colourSlate())); }),
        row("jfifThumbnail", "JPEG, a thumbnail in a JFIF extension",
            [] {
                return inserted(behindJfif, segment(app0, "JFXX\0\x10"s + jpegOf(thumbnail())));
            }),
        row("icc", "JPEG, an ICC profile",
            [] { return jpegOf(colourSlate(), {.icc = std::string(3000, 'p')}); }),
        row("iccInParts", "JPEG, an ICC profile of 300 kB in parts",
            [] { return jpegOf(colourSlate(), {.icc = std::string(300'000, 'p')}); }),
        row("xmp", "JPEG, XMP",
            [] {
                return inserted(behindJfif, segment(app1, "http://ns.adobe.com/xap/1.0/\0<x/>"s));
            }),
        row("extendedXmp", "JPEG, extended XMP in 20 segments before EXIF",
            [] {
                std::string all;
                for (int i = 0; i < 20; ++i) {
                    all += segment(app1, "http://ns.adobe.com/xmp/extension/\0"s +
                                             std::string(60000, 'x'));
                }
                return inserted(behindJfif, all + segment(app1, bigEndianExif()));
            }),
        row("photoshop", "JPEG, IPTC in an image resource block",
            [] {
                return inserted(behindJfif,
                                segment(app13, "Photoshop 3.0\0008BIM\x04\x04\0\0\0\0\0\0"s));
            }),
        row("comment", "JPEG, comments",
            [] {
                return inserted(behindJfif, segment(comment, "scanned") + segment(comment, ""));
            }),
        row("fillBytes", "JPEG, fill bytes before markers", withFillBytes),
        row("noTables", "JPEG, the usual Huffman tables left out",
            [] { return withoutTables(jpegOf(colourSlate())); }),
    };
}

std::vector<ZooRow> behindRows()
{
    const auto lossy = [](std::string name, std::string how, const Bytes &bytes) {
        ZooRow cut = row(std::move(name), std::move(how), bytes);
        cut.tolerance = 12;
        return cut;
    };
    return {
        row("multiPicture", "JPEG, a second picture as in MPO",
            [] {
                return inserted(behindJfif, segment(app2, "MPF\0II*\0\x08\0\0\0\0\0"s)) +
                       jpegOf(blankFrame());
            }),
        row("trailingZeros", "JPEG, a megabyte of zeros behind it",
            [] { return jpegOf(colourSlate()) + std::string(1'000'000, '\0'); }),
        row("trailingText", "JPEG, text behind it",
            [] { return jpegOf(colourSlate()) + "Written by a lab.\r\n"; }),
        row("trailingFilm", "JPEG, a film behind it",
            [] {
                return jpegOf(colourSlate()) +
                       "\0\0\0\x18"
                       "ftypmp42"s +
                       std::string(5000, 'f');
            }),
        row("noEnd", "JPEG, the end marker left out",
            [] {
                std::string bytes = jpegOf(colourSlate());
                bytes.resize(bytes.size() - 2);
                return bytes;
            }),
        lossy("cutShort", "JPEG, its last part missing",
              [] {
                  std::string bytes = jpegOf(colourSlate());
                  bytes.resize(bytes.size() * 98 / 100);
                  return bytes;
              }),
        row(
            "half", "JPEG, its second half missing",
            [] {
                std::string bytes = jpegOf(colourSlate());
                bytes.resize(bytes.size() / 2);
                return bytes;
            },
            ZooOutcome::noSlate),
    };
}

std::vector<ZooRow> refusedRows()
{
    const auto refused = [](std::string name, std::string how, const Bytes &bytes) {
        return row(std::move(name), std::move(how), bytes, ZooOutcome::refused);
    };
    const auto claimed = [&](const std::string &name, const std::string &how, std::string head) {
        return refused(name, how,
                       [head = std::move(head)] { return head + std::string(3000, 'x'); });
    };
    return {
        refused("twelveBits", "JPEG of 12 bits a sample", [] { return changedFrame(4, {12}); }),
        refused("lossless", "lossless JPEG", [] { return changedFrame(1, {0xC3}); }),
        refused("hierarchical", "hierarchical JPEG", [] { return changedFrame(1, {0xC5}); }),
        refused("linesUnknown", "JPEG, its height only behind the picture",
                [] {
                    return changedFrame(5, {0, 0});
                }),
        refused("noWidth", "JPEG of no width",
                [] {
                    return changedFrame(7, {0, 0});
                }),
        refused("leadingLine", "JPEG behind an empty line",
                [] { return "\r\n" + jpegOf(colourSlate()); }),
        refused("leadingZeros", "JPEG behind zeros",
                [] { return std::string(512, '\0') + jpegOf(colourSlate()); }),
        refused("noPicture", "JPEG without a picture",
                [] { return "\xFF\xD8"s + segment(app1, exifWithThumbnail()) + "\xFF\xD9"; }),
        refused("startOnly", "the start marker of a JPEG file", [] { return "\xFF\xD8\xFF"s; }),
        refused("empty", "no byte", [] { return ""s; }),
        claimed("png", "PNG", "\x89PNG\r\n\x1A\n"),
        claimed("gif", "GIF", "GIF89a"),
        claimed("bmp", "BMP", "BM"),
        claimed("webp", "WebP", "RIFF\x10\0\0\0WEBPVP8 "s),
        claimed("heif", "HEIF",
                "\0\0\0\x18"
                "ftypheic"s),
        claimed("jpeg2000", "JPEG 2000", "\0\0\0\x0CjP  \r\n\x87\n"s),
        claimed("jpegXl", "JPEG XL", "\xFF\x0A"),
        claimed("jpegLs", "JPEG-LS", "\xFF\xD8\xFF\xF7\0\x0B\x08\0\x10\0\x10\1\1\x11\0"s),
        claimed("psd", "PSD", "8BPS\0\1"s),
        claimed("pdf", "PDF", "%PDF-1.7\n"),
    };
}

std::vector<ZooRow> sizeRows()
{
    std::vector<ZooRow> rows;
    for (const auto &[width, height] :
         {std::pair{1, 1}, {1, 700}, {700, 1}, {7, 7}, {8, 8}, {17, 9}, {65500, 1}, {1, 65500}}) {
        const RasterImage image{width, height, 1,
                                std::vector<std::uint16_t>(static_cast<std::size_t>(width) *
                                                               static_cast<std::size_t>(height),
                                                           40000)};
        const std::string size = std::to_string(width) + "x" + std::to_string(height);
        for (const bool progressive : {false, true}) {
            ZooRow one =
                row((progressive ? "progressiveOf" : "sequentialOf") + size,
                    std::string("JPEG, ") + (progressive ? "progressive, " : "") + size + " pixels",
                    [image, progressive] { return jpegOf(image, {.progressive = progressive}); },
                    ZooOutcome::noSlate);
            one.picture = [image] { return image; };
            one.tolerance = 1;
            rows.push_back(std::move(one));
        }
    }
    return rows;
}

} // namespace

std::vector<ZooRow> jpegFileRows()
{
    std::vector<ZooRow> rows;
    for (std::vector<ZooRow> some : {segmentRows(), behindRows(), refusedRows(), sizeRows()}) {
        rows.insert(rows.end(), some.begin(), some.end());
    }
    return rows;
}

} // namespace quillmark::test
