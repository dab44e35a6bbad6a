// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/zoo/Bombs.h"
#include "detection/zoo/RawFrames.h"

#include <utility>

namespace quillmark::test {
namespace {

using enum TiffType;
using Path = std::filesystem::path;
using Entries = RawTiffEntries;

RasterImage smallPicture()
{
    return {64, 64, 1, std::vector<std::uint16_t>(std::size_t{64} * 64, 40000)};
}

Bomb raw(std::string name, const std::string &how, double megapixels, const EntryChange &change,
         const RawTiff::Format &format = {})
{
    return {std::move(name), "TIFF, " + how,
            [=](const Path &file) {
                RawTiff tiff(format);
                const RasterImage image = smallPicture();
                const Entries plain = plainEntries(image, tiff.add(packedBytes(image)));
                tiff.setFirst(tiff.addDirectory(change(plain, tiff)));
                writeBytes(file, tiff.bytes());
            },
            megapixels};
}

Entries sized(Entries entries, std::uint64_t width, std::uint64_t height)
{
    entries = with(std::move(entries), {256, longNumber, {width}});
    entries = with(std::move(entries), {257, longNumber, {height}});
    return with(std::move(entries), {278, longNumber, {height}});
}

Bomb claim(const std::string &name, const std::string &how, std::uint64_t width,
           std::uint64_t height, const RawTiff::Format &format = {})
{
    return raw(
        name, how, 0,
        [=](Entries entries, RawTiff &) { return sized(std::move(entries), width, height); },
        format);
}

constexpr double small = 64 * 64 / 1e6;

/// Pages of which the last is followed by one of the others again.
Bomb pages(std::string name, const std::string &how, std::size_t count, std::size_t afterLast)
{
    return {std::move(name), "TIFF, " + how,
            [=](const Path &file) {
                RawTiff tiff;
                const RasterImage image = smallPicture();
                const Entries plain = plainEntries(image, tiff.add(packedBytes(image)));
                std::vector<std::uint64_t> places{tiff.addDirectory(plain)};
                while (places.size() < count) {
                    places.push_back(tiff.addDirectory(plain));
                    tiff.setNext(places.at(places.size() - 2), places.back());
                }
                tiff.setNext(places.back(), places.at(afterLast));
                writeBytes(file, tiff.bytes());
            },
            small};
}

/// A directory that is its own directory of EXIF, and its own reduced picture.
Bomb insideItself()
{
    return {"insideItself", "TIFF, a directory inside itself",
            [](const Path &file) {
                RawTiff tiff;
                const RasterImage image = smallPicture();
                Entries entries = plainEntries(image, tiff.add(packedBytes(image)));
                const auto pointing = [&entries](std::uint64_t place) {
                    return with(with(entries, {330, longNumber, {place}}),
                                {34665, longNumber, {place}});
                };
                const std::uint64_t place = RawTiff(tiff).addDirectory(pointing(0));
                tiff.setFirst(tiff.addDirectory(pointing(place)));
                writeBytes(file, tiff.bytes());
            },
            small};
}

/// The file's last bytes are a hole, so that it is large at no cost.
Bomb withHole(std::string name, const std::string &how, double megapixels, std::uint64_t zeros,
              const std::function<Entries(Entries, std::uint64_t hole)> &change)
{
    return {std::move(name), "TIFF, " + how,
            [=](const Path &file) {
                constexpr std::uint64_t hole = 1U << 20U;
                RawTiff tiff;
                const RasterImage image = smallPicture();
                const Entries plain = plainEntries(image, tiff.add(packedBytes(image)));
                tiff.addDirectory(change(plain, hole));
                writeBytes(file, tiff.bytes());
                std::filesystem::resize_file(file, hole + zeros);
            },
            megapixels};
}

std::vector<Bomb> entryBombs()
{
    constexpr std::uint64_t megabytes = 1U << 20U;
    return {
        raw("hugeEntry", "an entry of four thousand million values", small,
            [](Entries entries, RawTiff &) {
                return with(std::move(entries), {50000, undefined, {8}, 0xFFFFFFFF});
            }),
        raw("hugeOffsets", "two thousand million strips", 0,
            [](Entries entries, RawTiff &) {
                entries = sized(std::move(entries), 1, 0x7FFFFFFF);
                entries = with(std::move(entries), {278, longNumber, {1}});
                entries = with(std::move(entries), {273, longNumber, {8}, 0x7FFFFFFF});
                return with(std::move(entries), {279, longNumber, {8}, 0x7FFFFFFF});
            }),
        withHole("largeProfile", "an ICC profile of 500 MB", small, 500 * megabytes,
                 [](Entries entries, std::uint64_t hole) {
                     return with(std::move(entries), {34675, undefined, {hole}, 500 * megabytes});
                 }),
        withHole("layers", "layers of an image editor of 1 GB", small, 1000 * megabytes,
                 [](Entries entries, std::uint64_t hole) {
                     return with(std::move(entries), {37724, undefined, {hole}, 1000 * megabytes});
                 }),
        withHole(
            "sharedValues", "3000 entries that share 64 MB", small, 64 * megabytes,
            [](Entries entries, std::uint64_t hole) {
                for (std::uint16_t i = 0; i < 3000; ++i) {
                    entries.push_back(
                        {static_cast<std::uint16_t>(40000 + i), undefined, {hole}, 64 * megabytes});
                }
                return entries;
            }),
        withHole("manyStrips", "60 million strips of a pixel", 0, 500 * megabytes,
                 [](Entries entries, std::uint64_t hole) {
                     constexpr std::uint64_t strips = 60'000'000;
                     entries = sized(std::move(entries), 1, strips);
                     entries = with(std::move(entries), {278, longNumber, {1}});
                     entries = with(std::move(entries), {273, longNumber, {hole}, strips});
                     return with(std::move(entries),
                                 {279, longNumber, {hole + 250 * megabytes}, strips});
                 }),
        raw("stripsOfARow", "300000 strips of a row of 16 pixels", 4.8,
            [](Entries entries, RawTiff &) {
                constexpr std::uint64_t strips = 300'000;
                entries = sized(std::move(entries), 16, strips);
                entries = with(std::move(entries), {278, longNumber, {1}});
                entries = with(std::move(entries),
                               {273, longNumber, std::vector<std::uint64_t>(strips, 8)});
                return with(std::move(entries),
                            {279, longNumber, std::vector<std::uint64_t>(strips, 16)});
            }),
        raw("manyEntries", "60000 entries", 0,
            [](Entries entries, RawTiff &) {
                for (int i = 0; i < 60000; ++i) {
                    entries.push_back({static_cast<std::uint16_t>(1000 + i), undefined, {8}, 1000});
                }
                return entries;
            }),
    };
}

Entries tiled(Entries entries, std::uint64_t width, std::uint64_t height)
{
    const std::vector<std::uint64_t> place = entries.at(6).values;
    for (const std::uint16_t tag : std::initializer_list<std::uint16_t>{273, 278, 279}) {
        entries = without(std::move(entries), tag);
    }
    entries = with(std::move(entries), {322, longNumber, {width}});
    entries = with(std::move(entries), {323, longNumber, {height}});
    entries = with(std::move(entries), {324, longNumber, place});
    return with(std::move(entries), {325, longNumber, {64 * 64}});
}

std::vector<Bomb> claims()
{
    return {
        claim("square", "2147483647x2147483647 declared", 0x7FFFFFFF, 0x7FFFFFFF),
        claim("largest", "4294967295x4294967295 declared", 0xFFFFFFFF, 0xFFFFFFFF),
        claim("largestBig", "4294967295x4294967295 declared in BigTIFF", 0xFFFFFFFF, 0xFFFFFFFF,
              {.bigTiff = true}),
        claim("wide", "a row of 2147483647 pixels", 0x7FFFFFFF, 1),
        claim("high", "a column of 2147483647 pixels", 1, 0x7FFFFFFF),
        claim("gigapixel", "31623x31623 declared without compression", 31623, 31623),
        raw("tiles", "a tile of 1048576x1048576", 0,
            [](Entries entries, RawTiff &) {
                return tiled(std::move(entries), 1U << 20U, 1U << 20U);
            }),
        raw("manyTiles", "a million tiles declared, none there", 0,
            [](Entries entries, RawTiff &) {
                return tiled(sized(std::move(entries), 16384, 16384), 16, 16);
            }),
    };
}

} // namespace

std::vector<Bomb> tiffBombs()
{
    std::vector<Bomb> bombs = claims();
    for (Bomb &bomb : entryBombs()) {
        bombs.push_back(std::move(bomb));
    }
    bombs.push_back(pages("pages", "20000 pages", 20000, 19999));
    bombs.push_back(pages("circle", "two pages, each after the other", 2, 0));
    bombs.push_back(insideItself());
    return bombs;
}

} // namespace quillmark::test
