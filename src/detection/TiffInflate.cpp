// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffInflate.h"

#include <algorithm>
#include <new>

namespace quillmark {
namespace {

/// As much as is read at once.
constexpr std::size_t inputBytes = 64U << 10U;

} // namespace

TiffInflate::TiffInflate(const FrameFile &file, const TiffSpan &packed)
    : m_file(file),
      m_offset(packed.offset),
      m_end(packed.offset + packed.count),
      m_input(inputBytes)
{
    if (inflateInit(&m_stream) != Z_OK) {
        throw std::bad_alloc();
    }
}

TiffInflate::~TiffInflate()
{
    inflateEnd(&m_stream);
}

void TiffInflate::refill()
{
    const auto wanted =
        static_cast<std::size_t>(std::min<std::uint64_t>(m_input.size(), m_end - m_offset));
    const std::size_t got = m_file.readAt(m_offset, m_input.data(), wanted);
    m_offset = got < wanted ? m_end : m_offset + got;
    m_stream.next_in = m_input.data();
    m_stream.avail_in = static_cast<uInt>(got);
}

bool TiffInflate::read(std::span<std::uint8_t> out)
{
    m_stream.next_out = out.data();
    m_stream.avail_out = static_cast<uInt>(out.size());
    // What comes right behind the output is looked at as well, as far as there is input: damage
    // there is told now rather than by the next call, whatever the input is cut into.
    while (!m_isOver && (m_stream.avail_out > 0 || (m_stream.avail_in == 0 && m_offset < m_end))) {
        if (m_stream.avail_in == 0 && m_offset < m_end) {
            refill();
        }
        const bool full = m_stream.avail_out == 0;
        const int state = inflate(&m_stream, Z_PARTIAL_FLUSH);
        m_isOver = state != Z_OK && !(full && state == Z_BUF_ERROR);
        if (m_isOver && state != Z_STREAM_END) {
            return false;
        }
    }
    return m_stream.avail_out == 0;
}

} // namespace quillmark
