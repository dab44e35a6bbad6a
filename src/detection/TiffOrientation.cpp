// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffOrientation.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <span>
#include <vector>

namespace quillmark {
namespace {

constexpr std::uint16_t orientationTag = 0x0112;

/// More entries than any directory in use has.
constexpr std::uint64_t maximumEntries = 4096;

/// The types of TIFF 6.0, section 2, and of BigTIFF that are whole numbers, by their codes.
enum FieldType : std::uint16_t {
    byteType = 1,
    shortType = 3,
    longType = 4,
    signedByteType = 6,
    signedShortType = 8,
    signedLongType = 9,
    long8Type = 16,
    signedLong8Type = 17,
};

struct NumberType {
    int bytes = 0;
    bool isSigned = false;
};

std::optional<NumberType> numberType(std::uint64_t type)
{
    switch (type) {
    case byteType:
        return NumberType{1, false};
    case signedByteType:
        return NumberType{1, true};
    case shortType:
        return NumberType{2, false};
    case signedShortType:
        return NumberType{2, true};
    case longType:
        return NumberType{4, false};
    case signedLongType:
        return NumberType{4, true};
    case long8Type:
        return NumberType{8, false};
    case signedLong8Type:
        return NumberType{8, true};
    default:
        return std::nullopt;
    }
}

/// Numbers at given places of a piece of the file.
struct Reader {
    std::span<const std::uint8_t> bytes;
    bool bigEndian = false;

    std::uint64_t number(std::size_t offset, int count) const
    {
        std::uint64_t value = 0;
        for (int i = 0; i < count; ++i) {
            const int place = bigEndian ? i : count - 1 - i;
            value = value << 8U | bytes[offset + static_cast<std::size_t>(place)];
        }
        return value;
    }
};

std::uint32_t orientationOf(const Reader &entry, bool big)
{
    const std::optional<NumberType> type = numberType(entry.number(2, 2));
    const std::uint64_t count = entry.number(4, big ? 8 : 4);
    const std::size_t valueOffset = big ? 12 : 8;
    if (!type || count != 1 ||
        valueOffset + static_cast<std::size_t>(type->bytes) > entry.bytes.size()) {
        return 1;
    }
    const std::uint64_t value = entry.number(valueOffset, type->bytes);
    const bool negative = type->isSigned && (value >> (8 * type->bytes - 1)) != 0;
    if (negative || value > std::numeric_limits<std::uint32_t>::max()) {
        return 1;
    }
    return static_cast<std::uint32_t>(value);
}

} // namespace

std::uint32_t tiffOrientation(const FrameFile &file)
{
    std::array<std::uint8_t, 16> head{};
    if (file.readAt(0, head.data(), head.size()) < 8) {
        return 1;
    }
    Reader reader{head, head[0] == 'M'};
    const bool big = reader.number(2, 2) == 43;
    const int countBytes = big ? 8 : 2;
    const std::size_t entryBytes = big ? 20 : 12;
    const std::uint64_t directory = big ? reader.number(8, 8) : reader.number(4, 4);

    std::array<std::uint8_t, 8> countField{};
    if (file.readAt(directory, countField.data(), countField.size()) < countField.size()) {
        return 1;
    }
    reader.bytes = countField;
    const std::uint64_t entries = std::min(reader.number(0, countBytes), maximumEntries);
    std::vector<std::uint8_t> table(static_cast<std::size_t>(entries) * entryBytes);
    const std::size_t got =
        file.readAt(directory + static_cast<std::uint64_t>(countBytes), table.data(), table.size());
    for (std::size_t offset = 0; offset + entryBytes <= got; offset += entryBytes) {
        reader.bytes = std::span(table).subspan(offset, entryBytes);
        if (reader.number(0, 2) == orientationTag) {
            return orientationOf(reader, big);
        }
    }
    return 1;
}

} // namespace quillmark
