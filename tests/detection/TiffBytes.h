// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <string>

namespace quillmark::test {

inline constexpr std::uint16_t widthTag = 256;
inline constexpr std::uint16_t lengthTag = 257;
inline constexpr std::uint16_t stripOffsetsTag = 273;
inline constexpr std::uint16_t orientationTag = 274;
inline constexpr std::uint16_t rowsPerStripTag = 278;

/// Changes the first directory of a little-endian TIFF file (TIFF 6.0, section 2). Throws
/// std::out_of_range where there is no such entry.
class TiffBytes
{
public:
    explicit TiffBytes(std::string &bytes) : m_bytes(bytes) {}

    /// Makes an entry a single value.
    void setEntry(std::uint16_t tag, std::uint16_t type, std::uint32_t value);

    /// Sets one of the 32-bit numbers that an entry points to.
    void setElement(std::uint16_t tag, std::size_t index, std::uint32_t value);

private:
    std::size_t entry(std::uint16_t tag) const;
    std::uint32_t number(std::size_t offset, int bytes) const;
    void put(std::size_t offset, std::uint32_t value, int bytes);

    std::string &m_bytes;
};

} // namespace quillmark::test
