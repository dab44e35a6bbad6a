// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/RawTiff.h"

#include <algorithm>

namespace quillmark::test {
namespace {

std::size_t typeBytes(TiffType type)
{
    switch (type) {
    case TiffType::byte:
    case TiffType::ascii:
    case TiffType::undefined:
        return 1;
    case TiffType::shortNumber:
        return 2;
    case TiffType::longNumber:
    case TiffType::directory:
        return 4;
    case TiffType::rational:
    case TiffType::long8:
        return 8;
    }
    return 1;
}

} // namespace

RawTiffEntries with(RawTiffEntries entries, const RawTiffEntry &entry)
{
    entries = without(std::move(entries), entry.tag);
    const auto place = std::ranges::upper_bound(entries, entry.tag, {}, &RawTiffEntry::tag);
    entries.insert(place, entry);
    return entries;
}

RawTiffEntries without(RawTiffEntries entries, std::uint16_t tag)
{
    std::erase_if(entries, [tag](const RawTiffEntry &entry) { return entry.tag == tag; });
    return entries;
}

RawTiff::RawTiff(Format format) : m_format(format)
{
    m_bytes = format.bigEndian ? "MM" : "II";
    m_bytes += number(format.bigTiff ? 43 : 42, 2);
    if (format.bigTiff) {
        m_bytes += number(8, 2) + number(0, 2);
    }
    m_bytes += number(0, offsetBytes());
}

std::uint64_t RawTiff::add(std::string_view bytes)
{
    if (m_bytes.size() % 2 != 0) {
        m_bytes.push_back('\0');
    }
    const std::uint64_t place = m_bytes.size();
    m_bytes += bytes;
    return place;
}

std::uint64_t RawTiff::addDirectory(const RawTiffEntries &entries)
{
    std::string table = number(entries.size(), m_format.bigTiff ? 8 : 2);
    for (const RawTiffEntry &entry : entries) {
        const std::size_t bytes = typeBytes(entry.type);
        std::string value;
        if (entry.declaredCount) {
            value = number(entry.values.at(0), offsetBytes());
        } else {
            for (const std::uint64_t one : entry.values) {
                value += number(one, bytes);
            }
            if (value.size() > offsetBytes()) {
                value = number(add(value), offsetBytes());
            }
            value.resize(offsetBytes());
        }
        table += number(entry.tag, 2) + number(static_cast<std::uint64_t>(entry.type), 2) +
                 number(entry.declaredCount.value_or(entry.values.size()), offsetBytes()) + value;
    }
    const std::uint64_t place = add(table + number(0, offsetBytes()));
    if (!m_hasFirst) {
        setFirst(place);
    }
    return place;
}

void RawTiff::setNext(std::uint64_t directory, std::uint64_t next)
{
    const std::size_t countBytes = m_format.bigTiff ? 8 : 2;
    std::uint64_t count = 0;
    for (std::size_t i = 0; i < countBytes; ++i) {
        const std::size_t at = m_format.bigEndian ? i : countBytes - 1 - i;
        count = count << 8U | static_cast<unsigned char>(m_bytes.at(directory + at));
    }
    put(directory + countBytes + count * (4 + 2 * offsetBytes()), next);
}

void RawTiff::setFirst(std::uint64_t directory)
{
    put(m_format.bigTiff ? 8 : 4, directory);
    m_hasFirst = true;
}

std::string RawTiff::number(std::uint64_t value, std::size_t bytes) const
{
    std::string text;
    for (std::size_t i = 0; i < bytes; ++i) {
        const std::size_t shift = 8 * (m_format.bigEndian ? bytes - 1 - i : i);
        text.push_back(static_cast<char>(value >> shift & 0xFFU));
    }
    return text;
}

void RawTiff::put(std::uint64_t at, std::uint64_t value)
{
    m_bytes.replace(at, offsetBytes(), number(value, offsetBytes()));
}

} // namespace quillmark::test
