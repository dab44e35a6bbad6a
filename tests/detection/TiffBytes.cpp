// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffBytes.h"

#include <stdexcept>

namespace quillmark::test {

void TiffBytes::setEntry(std::uint16_t tag, std::uint16_t type, std::uint32_t value)
{
    const std::size_t offset = entry(tag);
    put(offset + 2, type, 2);
    put(offset + 4, 1, 4);
    put(offset + 8, value, 4);
}

void TiffBytes::setElement(std::uint16_t tag, std::size_t index, std::uint32_t value)
{
    put(number(entry(tag) + 8, 4) + 4 * index, value, 4);
}

std::size_t TiffBytes::entry(std::uint16_t tag) const
{
    const std::size_t directory = number(4, 4);
    const std::uint32_t entries = number(directory, 2);
    for (std::uint32_t i = 0; i < entries; ++i) {
        const std::size_t offset = directory + 2 + std::size_t{12} * i;
        if (number(offset, 2) == tag) {
            return offset;
        }
    }
    throw std::out_of_range("no such entry");
}

std::uint32_t TiffBytes::number(std::size_t offset, int bytes) const
{
    std::uint32_t value = 0;
    for (int i = bytes - 1; i >= 0; --i) {
        value = value << 8U |
                static_cast<unsigned char>(m_bytes.at(offset + static_cast<std::size_t>(i)));
    }
    return value;
}

void TiffBytes::put(std::size_t offset, std::uint32_t value, int bytes)
{
    for (int i = 0; i < bytes; ++i) {
        m_bytes.at(offset + static_cast<std::size_t>(i)) =
            static_cast<char>(value >> static_cast<unsigned>(8 * i) & 0xFFU);
    }
}

} // namespace quillmark::test
