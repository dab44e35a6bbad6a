// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmark::test {

/// The field types of TIFF 6.0, section 2, and of BigTIFF, by their codes.
enum class TiffType : std::uint16_t {
    byte = 1,
    ascii = 2,
    shortNumber = 3,
    longNumber = 4,
    rational = 5,
    undefined = 7,
    directory = 13,
    long8 = 16,
};

struct RawTiffEntry {
    std::uint16_t tag = 0;
    TiffType type = TiffType::shortNumber;
    std::vector<std::uint64_t> values = {};
    /// Claims another count than there are values; the first of these is then where the file
    /// is said to have them.
    std::optional<std::uint64_t> declaredCount = {};
};

using RawTiffEntries = std::vector<RawTiffEntry>;

/// The entries with one more, or with one in the place of that of its tag, in the order of tags.
RawTiffEntries with(RawTiffEntries entries, const RawTiffEntry &entry);

/// The entries but for that of a tag.
RawTiffEntries without(RawTiffEntries entries, std::uint16_t tag);

/// A TIFF file put together piece by piece, as no library would write it. Entries are written
/// as they come, whether or not they make sense.
class RawTiff
{
public:
    struct Format {
        bool bigEndian = false;
        bool bigTiff = false;
    };

    RawTiff() : RawTiff(Format{}) {}
    explicit RawTiff(Format format);

    /// Appends bytes and gives their place.
    std::uint64_t add(std::string_view bytes);

    /// Appends a directory and gives its place. The first one is that of the first page.
    std::uint64_t addDirectory(const RawTiffEntries &entries);

    /// Says which directory comes behind another: by itself none does.
    void setNext(std::uint64_t directory, std::uint64_t next);

    /// Says which directory is that of the first page.
    void setFirst(std::uint64_t directory);

    /// How many bytes there are so far.
    std::uint64_t size() const { return m_bytes.size(); }

    const std::string &bytes() const { return m_bytes; }

private:
    std::string number(std::uint64_t value, std::size_t bytes) const;
    void put(std::uint64_t at, std::uint64_t value);
    std::size_t offsetBytes() const { return m_format.bigTiff ? 8 : 4; }

    Format m_format;
    std::string m_bytes;
    bool m_hasFirst = false;
};

} // namespace quillmark::test
