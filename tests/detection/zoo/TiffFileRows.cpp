// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// Directories of TIFF files that are unusual, wrong or damaged.

#include "detection/zoo/RawFrames.h"

#include <utility>

namespace quillmark::test {
namespace {

using namespace std::string_literals;
using enum TiffType;
using Path = std::filesystem::path;
using Entries = RawTiffEntries;

EntryChange leavingOut(std::uint16_t tag)
{
    return [tag](Entries entries, RawTiff &) { return without(std::move(entries), tag); };
}

EntryChange having(const RawTiffEntry &entry)
{
    return [entry](Entries entries, RawTiff &) { return with(std::move(entries), entry); };
}

RawTiffEntry bytesOf(std::uint16_t tag, TiffType type, std::size_t count)
{
    return {tag, type, std::vector<std::uint64_t>(count, 'x')};
}

/// What is decoded, and yet to no picture.
ZooRow unreadable(ZooRow row)
{
    row.outcome = ZooOutcome::noSlate;
    row.tolerance = anyLuma;
    return row;
}

std::vector<ZooRow> missingRows()
{
    return {
        rawRow("plain", "plain", [](Entries entries, RawTiff &) { return entries; }),
        rawRow("noByteCounts", "without byte counts", leavingOut(279)),
        rawRow("zeroByteCounts", "byte counts of 0", having({279, longNumber, {0}})),
        rawRow("smallByteCounts", "byte counts too small", having({279, longNumber, {100}})),
        rawRow("largeByteCounts", "byte counts beyond the file",
               having({279, longNumber, {0xFFFFFFFF}})),
        rawRow("noRowsPerStrip", "without rows per strip", leavingOut(278)),
        rawRow("anyRowsPerStrip", "rows per strip without bound",
               having({278, longNumber, {0xFFFFFFFF}})),
        // Of which there is one then, whatever else is said.
        unreadable(rawRow("noSamplesPerPixel", "RGB without samples per pixel", leavingOut(277))),
        rawRow("noPhotometric", "without a photometric interpretation", leavingOut(262)),
        greyRawRow("greyNoPhotometric", "grey without a photometric interpretation",
                   leavingOut(262)),
        rawRow("noCompression", "without a compression", leavingOut(259)),
        rawRow("noResolution", "without a resolution",
               [](Entries entries, RawTiff &) {
                   return without(without(without(std::move(entries), 282), 283), 296);
               }),
        rawRow("bitsOnce", "one number of bits for three samples", having({258, shortNumber, {8}})),
        rawRow("sizeAsLong", "its size in 32 bits",
               [](Entries entries, RawTiff &) {
                   const RasterImage image = colourSlate();
                   entries = with(std::move(entries),
                                  {256, longNumber, {static_cast<std::uint64_t>(image.width)}});
                   return with(std::move(entries),
                               {257, longNumber, {static_cast<std::uint64_t>(image.height)}});
               }),
        refused(rawRow("noWidth", "without a width", leavingOut(256))),
        refused(rawRow("noOffsets", "without offsets of strips", leavingOut(273))),
        refused(rawRow("widthZero", "no pixel wide", having({256, shortNumber, {0}}))),
        refused(rawRow("heightZero", "no pixel high", having({257, shortNumber, {0}}))),
        refused(rawRow("mixedBits", "samples of 5, 6 and 5 bits",
                       having({258, shortNumber, {5, 6, 5}}))),
        refused(rawRow("complexNumbers", "complex numbers", having({339, shortNumber, {5, 5, 5}}))),
        refused(rawRow("unknownCompression", "an unknown compression",
                       having({259, shortNumber, {4711}}))),
        refused(greyRawRow("mask", "a transparency mask", having({262, shortNumber, {4}}))),
        greyRawRow("sensor", "grey of a sensor", having({262, shortNumber, {32803}})),
        rawRow("linearRaw", "linear colours of a sensor", having({262, shortNumber, {34892}})),
        rawRow("formatVoid", "samples of no stated format", having({339, shortNumber, {4, 4, 4}})),
        rawRow("reversedPlainly", "the order of bits stated", having({266, shortNumber, {1}})),
    };
}

std::vector<ZooRow> besideRows()
{
    return {
        rawRow("icc", "an ICC profile", having(bytesOf(34675, undefined, 3000))),
        rawRow("xmp", "XMP", having(bytesOf(700, byte, 3000))),
        rawRow("iptc", "IPTC in 32-bit numbers", having(bytesOf(33723, longNumber, 200))),
        rawRow("photoshop", "image resources", having(bytesOf(34377, byte, 3000))),
        rawRow("layers", "layers of an image editor", having(bytesOf(37724, undefined, 900'000))),
        rawRow("privateTag", "a private tag", having(bytesOf(50000, undefined, 100'000))),
        rawRow("exif", "an EXIF directory",
               [](Entries entries, RawTiff &tiff) {
                   const Entries exif{{33434, rational, {1 | std::uint64_t{60} << 32U}}};
                   const std::uint64_t place = tiff.addDirectory(exif);
                   entries = with(std::move(entries), {34665, longNumber, {place}});
                   tiff.setFirst(tiff.addDirectory(entries));
                   return entries;
               }),
        rawRow("exifNowhere", "an EXIF directory outside the file",
               having({34665, longNumber, {0xFFFFFFF0}})),
        rawRow("subDirectories", "a thumbnail in a subdirectory",
               [](Entries entries, RawTiff &tiff) {
                   const RasterImage small{8, 8, 1, std::vector<std::uint16_t>(64, 9)};
                   const Entries plain = plainEntries(small, tiff.add(packedBytes(small)));
                   const std::uint64_t place = tiff.addDirectory(plain);
                   entries = with(std::move(entries), {330, directory, {place}});
                   tiff.setFirst(tiff.addDirectory(entries));
                   return entries;
               }),
        rawRow("unsorted", "tags out of order",
               [](Entries entries, RawTiff &) {
                   std::swap(entries.at(1), entries.at(8));
                   return entries;
               }),
        rawRow("twice", "an entry twice",
               [](Entries entries, RawTiff &) {
                   entries.insert(entries.begin() + 2, entries.at(1));
                   return entries;
               }),
        rawRow("unknownType", "an entry of an unknown type",
               having({50001, static_cast<TiffType>(99), {1}})),
        rawRow("entryBeyondFile", "an entry whose values lie outside the file",
               having({50001, undefined, {0x7FFFFFFF}, 5000})),
        rawRow("entryTooLarge", "an entry of four thousand million values",
               having({50001, undefined, {8}, 0xFFFFFFFF})),
        rawRow("emptyEntry", "an entry of no values", having({50001, undefined, {8}, 0})),
        rawRow("textUnended", "a text without its end",
               having({305, ascii, {'S', 'c', 'a', 'n', 'X'}})),
        rawRow("resolutionZero", "a resolution of 0/0", having({282, rational, {0}})),
        rawRow("orientationNine", "an orientation without meaning",
               having({274, shortNumber, {9}})),
    };
}

ZooRow wholeRow(std::string name, const std::string &how, const std::function<std::string()> &bytes,
                ZooOutcome outcome)
{
    ZooRow row{std::move(name), "TIFF, " + how,
               [bytes](const Path &file) { writeBytes(file, bytes()); }, outcome};
    row.tolerance = anyLuma;
    return row;
}

/// A plain file whose only directory is followed by the one at that place.
std::string followedBy(std::uint64_t next)
{
    RawTiff tiff;
    const RasterImage image = colourSlate();
    const Entries plain = plainEntries(image, tiff.add(packedBytes(image)));
    const std::uint64_t place = tiff.addDirectory(plain);
    tiff.setNext(place, next == 0 ? place : next);
    return tiff.bytes();
}

/// The directory first, and the pixels cut short behind it.
std::string cutShort(double share)
{
    RawTiff tiff;
    const RasterImage image = colourSlate();
    const Entries plain = plainEntries(image, 1000);
    tiff.addDirectory(plain);
    std::string bytes = tiff.bytes();
    bytes.resize(1000);
    const std::string pixels = packedBytes(image);
    return bytes +
           pixels.substr(0, static_cast<std::size_t>(share * static_cast<double>(pixels.size())));
}

/// Tiles of a size that the format does not allow, and that is found all the same.
std::string oddTiles()
{
    constexpr int width = 100;
    constexpr int height = 60;
    const RasterImage image = greySlate();
    RawTiff tiff;
    std::vector<std::uint64_t> places;
    for (int top = 0; top < image.height; top += height) {
        for (int left = 0; left < image.width; left += width) {
            std::string tile;
            for (int i = 0; i < width * height; ++i) {
                const int x = std::min(left + i % width, image.width - 1);
                const int y = std::min(top + i / width, image.height - 1);
                tile.push_back(static_cast<char>(image.at(x, y, 0) >> 8U));
            }
            places.push_back(tiff.add(tile));
        }
    }
    Entries entries = plainEntries(image, 0);
    for (const std::uint16_t tag : std::initializer_list<std::uint16_t>{273, 278, 279}) {
        entries = without(std::move(entries), tag);
    }
    entries = with(std::move(entries), {322, shortNumber, {width}});
    entries = with(std::move(entries), {323, shortNumber, {height}});
    entries = with(std::move(entries), {324, longNumber, places});
    entries = with(std::move(entries),
                   {325, longNumber,
                    std::vector<std::uint64_t>(places.size(), std::uint64_t{width} * height)});
    tiff.addDirectory(entries);
    return tiff.bytes();
}

std::vector<ZooRow> wholeRows()
{
    using enum ZooOutcome;
    return {
        wholeRow(
            "directoryLoop", "a directory followed by itself", [] { return followedBy(0); }, slate),
        wholeRow(
            "nextNowhere", "a next directory outside the file",
            [] { return followedBy(0xFFFFFFF0); }, slate),
        wholeRow(
            "lastPartMissing", "its last part missing", [] { return cutShort(0.98); }, slate),
        wholeRow(
            "halfMissing", "its second half missing", [] { return cutShort(0.5); }, noSlate),
        wholeRow(
            "pixelsMissing", "all pixels missing", [] { return cutShort(0); }, refused),
        wholeRow("oddTiles", "tiles of 100x60", oddTiles, slate),
        wholeRow(
            "trailing", "a megabyte of zeros behind it",
            [] { return followedBy(0) + std::string(1'000'000, '\0'); }, slate),
        wholeRow(
            "headOnly", "nothing but its head", [] { return "II*\0\x08\0\0\0"s; }, refused),
        wholeRow(
            "directoryNowhere", "a directory outside the file",
            [] { return "II*\0\xF0\xFF\xFF\xFF"s + std::string(999, 'x'); }, refused),
        wholeRow(
            "noDirectory", "no directory", [] { return "II*\0\0\0\0\0"s + std::string(999, 'x'); },
            refused),
        wholeRow(
            "emptyDirectory", "a directory without entries",
            [] { return "II*\0\x08\0\0\0\0\0\0\0\0\0"s + std::string(999, 'x'); }, refused),
        wholeRow(
            "wrongVersion", "another version in its head",
            [] { return "II\x2C\0\x08\0\0\0"s + std::string(999, 'x'); }, refused),
    };
}

} // namespace

std::vector<ZooRow> tiffFileRows()
{
    std::vector<ZooRow> rows;
    for (std::vector<ZooRow> some : {missingRows(), besideRows(), wholeRows()}) {
        rows.insert(rows.end(), some.begin(), some.end());
    }
    for (ZooRow &row : rows) {
        row.orientation = row.name == "orientationNine" ? 9 : 1;
    }
    return rows;
}

} // namespace quillmark::test
