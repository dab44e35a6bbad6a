// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/JpegSource.h"

#include <algorithm>

namespace quillmark {
namespace {

/// libjpeg leaves its fast entropy decoder near the end of every buffer, so this one is
/// large enough for that not to be noticed.
constexpr std::size_t bufferBytes = 256U << 10U;

JpegSource &sourceOf(j_decompress_ptr info)
{
    return *static_cast<JpegSource *>(info->src);
}

} // namespace

JpegSource::JpegSource(const FrameFile &file)
    : jpeg_source_mgr{}, m_file(file), m_buffer(bufferBytes)
{
    init_source = [](j_decompress_ptr) {};
    fill_input_buffer = [](j_decompress_ptr info) -> boolean {
        sourceOf(info).fill();
        return TRUE;
    };
    skip_input_data = [](j_decompress_ptr info, long count) { sourceOf(info).skip(count); };
    resync_to_restart = jpeg_resync_to_restart;
    term_source = [](j_decompress_ptr) {};
}

void JpegSource::fill()
{
    const auto wanted =
        static_cast<std::size_t>(std::min<std::uint64_t>(m_buffer.size(), m_allowed));
    std::size_t count = m_file.readAt(m_offset, m_buffer.data(), wanted);
    m_offset += count;
    m_allowed -= count;
    m_ended = count == 0;
    if (m_ended) {
        m_buffer[0] = 0xFF;
        m_buffer[1] = JPEG_EOI;
        count = 2;
    }
    next_input_byte = m_buffer.data();
    bytes_in_buffer = count;
}

int JpegSource::nextByte()
{
    if (bytes_in_buffer == 0) {
        fill();
    }
    --bytes_in_buffer;
    return *next_input_byte++;
}

void JpegSource::skip(long count)
{
    if (count <= 0) {
        return;
    }
    const auto wanted = static_cast<std::size_t>(count);
    if (wanted <= bytes_in_buffer) {
        next_input_byte += wanted;
        bytes_in_buffer -= wanted;
    } else {
        m_offset += wanted - bytes_in_buffer;
        bytes_in_buffer = 0;
    }
}

bool JpegSource::pictureDataFollow()
{
    if (bytes_in_buffer == 0) {
        fill();
    }
    if (m_ended) {
        return false;
    }
    // A byte of 0xFF begins a marker unless a zero is stuffed behind it (ITU-T T.81, B.1.1.5).
    return next_input_byte[0] != 0xFF || bytes_in_buffer < 2 || next_input_byte[1] == 0;
}

} // namespace quillmark
