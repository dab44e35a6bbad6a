// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffHandle.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <limits>
#include <optional>
#include <utility>

namespace quillmark {
namespace {

/// What a single block of memory may take beyond the size of the file, inside libtiff.
constexpr std::uint64_t workingBytes = 64U << 20U;

int swallow(TIFF * /*tiff*/, void * /*user*/, const char * /*module*/, const char * /*format*/,
            std::va_list /*arguments*/)
{
    return 1; // dealt with: nothing is printed
}

using OpenOptions = std::unique_ptr<TIFFOpenOptions, void (*)(TIFFOpenOptions *)>;

} // namespace

TiffHandle::TiffHandle(const FrameFile &file)
{
    if (std::optional<TiffDirectory> directory = TiffDirectory::read(file)) {
        m_cursor = std::make_unique<Cursor>(Cursor{file, *std::move(directory)});
        open();
    }
}

void TiffHandle::open()
{
    const FrameFile &file = m_cursor->file;
    const OpenOptions options(TIFFOpenOptionsAlloc(), TIFFOpenOptionsFree);
    if (!options) {
        return;
    }
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), swallow, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), swallow, nullptr);
    constexpr std::uint64_t most = std::numeric_limits<tmsize_t>::max();
    TIFFOpenOptionsSetMaxSingleMemAlloc(
        options.get(),
        static_cast<tmsize_t>(std::min(file.size(), most - workingBytes) + workingBytes));

    // m: no memory mapping; c: strips stay as the file has them.
    m_tiff.reset(TIFFClientOpenExt(
        "frame", "rmc", m_cursor.get(), read,
        [](thandle_t, void *, tmsize_t) -> tmsize_t { return -1; }, seek,
        [](thandle_t) { return 0; },
        [](thandle_t cursor) -> toff_t { return static_cast<Cursor *>(cursor)->file.size(); },
        nullptr, nullptr, options.get()));
    if (m_tiff) {
        clipToFile(file);
    }
}

tmsize_t TiffHandle::read(thandle_t cursor, void *out, tmsize_t count)
{
    auto *place = static_cast<Cursor *>(cursor);
    const std::size_t got =
        count > 0 ? place->file.readAt(place->offset, out, static_cast<std::size_t>(count)) : 0;
    place->directory.cover(place->offset, {static_cast<std::uint8_t *>(out), got});
    place->offset += got;
    return static_cast<tmsize_t>(got);
}

toff_t TiffHandle::seek(thandle_t cursor, toff_t offset, int whence)
{
    auto *place = static_cast<Cursor *>(cursor);
    if (whence == SEEK_CUR) {
        offset += place->offset;
    } else if (whence == SEEK_END) {
        offset += place->file.size();
    }
    place->offset = offset;
    return offset;
}

/// libtiff decodes nothing of a strip or tile that is not in the file to its last byte. So
/// that the rows that are there come out, the last one's byte count is made what the file
/// has of it. libtiff hands out its own table of counts, and goes by it from then on.
void TiffHandle::clipToFile(const FrameFile &file)
{
    const bool tiled = TIFFIsTiled(get()) != 0;
    std::uint64_t *counts = nullptr;
    if (TIFFGetField(get(), tiled ? TIFFTAG_TILEBYTECOUNTS : TIFFTAG_STRIPBYTECOUNTS, &counts) !=
            1 ||
        counts == nullptr) {
        return;
    }
    const std::uint32_t blocks = tiled ? TIFFNumberOfTiles(get()) : TIFFNumberOfStrips(get());
    for (std::uint32_t i = 0; i < blocks; ++i) {
        const std::uint64_t offset = TIFFGetStrileOffset(get(), i);
        const std::uint64_t left = file.size() - std::min(offset, file.size());
        counts[i] = std::min(counts[i], left);
        m_largestBlock = std::max(m_largestBlock, counts[i]);
    }
}

} // namespace quillmark
