// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/zoo/RawFrames.h"

#include <fstream>
#include <utility>

namespace quillmark::test {
namespace {

ZooRow changedRow(std::string name, const std::string &how, const EntryChange &change,
                  RasterImage (*picture)())
{
    ZooRow row{std::move(name), "TIFF, " + how, {}};
    row.picture = picture;
    row.write = [change, picture](const std::filesystem::path &file) {
        RawTiff tiff;
        const RasterImage image = picture();
        const RawTiffEntries plain = plainEntries(image, tiff.add(packedBytes(image)));
        tiff.addDirectory(change(plain, tiff));
        writeBytes(file, tiff.bytes());
    };
    return row;
}

} // namespace

void writeBytes(const std::filesystem::path &file, std::string_view bytes)
{
    std::ofstream out(file, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out.flush()) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

std::string packedBytes(const RasterImage &image)
{
    std::string bytes;
    for (const std::uint16_t sample : image.samples) {
        bytes.push_back(static_cast<char>((sample * 255 + 32767) / 65535));
    }
    return bytes;
}

RawTiffEntries plainEntries(const RasterImage &image, std::uint64_t strip)
{
    using enum TiffType;
    const auto width = static_cast<std::uint64_t>(image.width);
    const auto height = static_cast<std::uint64_t>(image.height);
    const auto channels = static_cast<std::uint64_t>(image.channels);
    const std::uint64_t minIsBlack = 1;
    const std::uint64_t rgb = 2;
    return {
        {254, longNumber, {0}},
        {256, shortNumber, {width}},
        {257, shortNumber, {height}},
        {258, shortNumber, std::vector<std::uint64_t>(channels, 8)},
        {259, shortNumber, {1}},
        {262, shortNumber, {channels == 1 ? minIsBlack : rgb}},
        {273, longNumber, {strip}},
        {277, shortNumber, {channels}},
        {278, shortNumber, {height}},
        {279, longNumber, {width * height * channels}},
        {282, rational, {300 | std::uint64_t{1} << 32U}},
        {283, rational, {300 | std::uint64_t{1} << 32U}},
        {296, shortNumber, {2}},
    };
}

ZooRow rawRow(std::string name, const std::string &how, const EntryChange &change)
{
    return changedRow(std::move(name), how, change, colourSlate);
}

ZooRow greyRawRow(std::string name, const std::string &how, const EntryChange &change)
{
    return changedRow(std::move(name), how, change, greySlate);
}

ZooRow refused(ZooRow row)
{
    row.outcome = ZooOutcome::refused;
    return row;
}

} // namespace quillmark::test
