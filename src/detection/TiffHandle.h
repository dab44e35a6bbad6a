// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameFile.h"
#include "detection/TiffDirectory.h"

#include <tiffio.h>

#include <cstdint>
#include <memory>

namespace quillmark {

/// libtiff at work on the first directory of a file. Its complaints are dropped: what can be
/// read is read.
class TiffHandle
{
public:
    /// Holds nothing where the file has no directory that libtiff understands. The file
    /// outlives the handle.
    explicit TiffHandle(const FrameFile &file);

    explicit operator bool() const { return m_tiff != nullptr; }
    TIFF *get() const { return m_tiff.get(); }
    const FrameFile &file() const { return m_cursor->file; }

    /// The bytes of the largest strip or tile as it is in the file.
    std::uint64_t largestBlock() const { return m_largestBlock; }

    /// The value of a tag, or the default of the format, or else `fallback`. The type must
    /// be the one that libtiff documents for the tag.
    template <typename Value>
    Value tag(std::uint32_t number, Value fallback) const
    {
        Value value{};
        return TIFFGetFieldDefaulted(m_tiff.get(), number, &value) == 1 ? value : fallback;
    }

private:
    struct Cursor {
        const FrameFile &file;
        TiffDirectory directory; ///< that libtiff is shown
        std::uint64_t offset = 0;
    };
    struct Closer {
        void operator()(TIFF *tiff) const { TIFFClose(tiff); }
    };

    void open();
    static tmsize_t read(thandle_t cursor, void *out, tmsize_t count);
    static toff_t seek(thandle_t cursor, toff_t offset, int whence);
    void clipToFile(const FrameFile &file);

    std::unique_ptr<Cursor> m_cursor; ///< stays at its place while the handle is moved
    std::unique_ptr<TIFF, Closer> m_tiff;
    std::uint64_t m_largestBlock = 0;
};

} // namespace quillmark
