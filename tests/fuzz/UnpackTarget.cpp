// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffDeflate.h"
#include "detection/TiffInflate.h"
#include "detection/TiffLzw.h"
#include "fuzz/MemoryFile.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace quillmark::fuzz {
namespace {

/// What a strip should hold.
struct Rows {
    std::size_t count;
    std::size_t bytes; ///< of each

    std::size_t size() const { return count * bytes; }
};

using Unpacked = std::vector<std::uint8_t>;

/// LZW is unpacked at once and row by row: by the same rules, so that both give the same.
void unpackLzw(const FrameFile &file, const TiffSpan &packed, const Rows &rows)
{
    // Large for a stack.
    const auto lzw = std::make_unique<TiffLzw>();
    const std::span<const std::uint8_t> all = lzw->unpack(file, packed, rows.size());
    require(all.empty() || all.size() == rows.size(), "a strip comes whole or not at all");
    const Unpacked atOnce(all.begin(), all.end());

    Unpacked inRows;
    lzw->begin(file, packed);
    for (std::size_t i = 0; i < rows.count; ++i) {
        const std::span<const std::uint8_t> row = lzw->next(rows.bytes);
        require(row.empty() || row.size() == rows.bytes, "a row comes whole or not at all");
        if (row.empty()) {
            require(lzw->next(rows.bytes).empty(), "nothing comes behind the end");
            break;
        }
        inRows.insert(inRows.end(), row.begin(), row.end());
    }
    require(!atOnce.empty() == (inRows.size() == rows.size()),
            "a strip that is whole at once is whole in rows");
    require(atOnce.empty() || atOnce == inRows, "rows are the same at once and one by one");
}

/// What libdeflate unpacks zlib does too, and it gives the rows before damage besides.
void unpackDeflate(const FrameFile &file, const TiffSpan &packed, const Rows &rows)
{
    Unpacked atOnce(rows.size());
    const bool isWhole = TiffDeflate().unpack(file, packed, atOnce);

    TiffInflate inflate(file, packed);
    Unpacked inRows;
    Unpacked row(rows.bytes);
    while (inRows.size() < rows.size() && inflate.read(row)) {
        inRows.insert(inRows.end(), row.begin(), row.end());
    }
    require(!isWhole || atOnce == inRows, "rows are the same at once and one by one");
    require(!isWhole || !inflate.read(row), "nothing comes behind the end");
}

/// The first four bytes tell the coding, how many rows there are, and how long they are; what
/// follows is a strip.
void unpack(Bytes bytes)
{
    constexpr std::size_t headBytes = 4;
    if (bytes.size() < headBytes) {
        return;
    }
    const Rows rows{bytes[1] + std::size_t{1}, (std::size_t{bytes[2]} << 8U | bytes[3]) % 1024 + 1};
    const MemoryFile memory(bytes);
    const std::optional<FrameFile> file = FrameFile::open(memory.path());
    require(file.has_value(), "a file in memory can be opened");
    const TiffSpan packed{headBytes, bytes.size() - headBytes};
    if (bytes[0] % 2 == 0) {
        unpackLzw(*file, packed, rows);
    } else {
        unpackDeflate(*file, packed, rows);
    }
}

} // namespace
} // namespace quillmark::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const quillmark::fuzz::TimeLimit limit;
    quillmark::fuzz::unpack({data, size});
    return 0;
}
