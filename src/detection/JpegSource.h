// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameFile.h"

#include <cstdint>
#include <cstdio>
#include <vector>

// jpeglib.h stands on cstdio without including it.
#include <jpeglib.h>

namespace quillmark {

/// Hands a file's bytes to libjpeg, and an end-of-image marker where the file ends too early.
/// Stays at its place while a decompressor uses it.
class JpegSource : public jpeg_source_mgr
{
public:
    explicit JpegSource(const FrameFile &file);
    JpegSource(const JpegSource &) = delete;
    JpegSource &operator=(const JpegSource &) = delete;

    /// Has the file end where so many more bytes have been read, however many it has. At first
    /// none are allowed. (Between segments libjpeg passes over anything, without end.)
    void allow(std::uint64_t bytes) { m_allowed += bytes; }

    /// Takes the next byte.
    int nextByte();

    void skip(long count);

    /// Whether picture data come next, rather than a marker or the end of the file.
    bool pictureDataFollow();

private:
    void fill();

    const FrameFile &m_file;
    std::uint64_t m_offset = 0; ///< of the byte behind the buffer
    std::uint64_t m_allowed = 0;
    bool m_ended = false;
    std::vector<JOCTET> m_buffer;
};

} // namespace quillmark
