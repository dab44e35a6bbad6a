// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/LargeTiff.h"

#include <fstream>
#include <stdexcept>
#include <string>

namespace quillmark::test {
namespace {

void append(std::string &bytes, std::uint64_t value, int count)
{
    for (int i = 0; i < count; ++i) {
        bytes.push_back(static_cast<char>(value >> (8 * i) & 0xFFU));
    }
}

/// TIFF 6.0, section 2; 3 is a 16-bit number and 4 a 32-bit one.
void appendEntry(std::string &bytes, std::uint16_t tag, std::uint16_t type, std::uint32_t count,
                 std::uint64_t value)
{
    append(bytes, tag, 2);
    append(bytes, type, 2);
    append(bytes, count, 4);
    append(bytes, value, 4);
}

} // namespace

void writeLargeTiff(const std::filesystem::path &file, std::uint32_t width, std::uint32_t height)
{
    constexpr std::uint16_t shortType = 3;
    constexpr std::uint16_t longType = 4;
    constexpr std::uint64_t bitsOffset = 8 + 2 + 9 * std::uint64_t{12} + 4;
    constexpr std::uint64_t pixelOffset = bitsOffset + std::uint64_t{3} * 2;
    const std::uint64_t pixelBytes = std::uint64_t{6} * width * height;
    std::string head("II*\0\10\0\0\0\11\0", 10); // nine entries, behind these bytes
    appendEntry(head, 256, longType, 1, width);
    appendEntry(head, 257, longType, 1, height);
    appendEntry(head, 258, shortType, 3, bitsOffset);
    appendEntry(head, 259, shortType, 1, 1); // without compression
    appendEntry(head, 262, shortType, 1, 2); // RGB
    appendEntry(head, 273, longType, 1, pixelOffset);
    appendEntry(head, 277, shortType, 1, 3); // samples per pixel
    appendEntry(head, 278, longType, 1, height);
    appendEntry(head, 279, longType, 1, pixelBytes);
    append(head, 0, 4); // no further directory
    for (int i = 0; i < 3; ++i) {
        append(head, 16, 2);
    }

    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(head.data(), static_cast<std::streamsize>(head.size()));
    out.close();
    if (!out) {
        throw std::runtime_error("cannot write " + file.string());
    }
    std::filesystem::resize_file(file, pixelOffset + pixelBytes);
}

} // namespace quillmark::test
