// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameDecoder.h"

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <utility>

namespace quillmark {

/// A luma image that comes into being from the top, row by row. Memory is set aside at once
/// but touched only with the rows that are asked for, so that writing a row finds it in the
/// cache and a declared size costs nothing before there are data. Rows that nobody writes
/// are mid-grey. Safe from several threads that write different rows or parts of rows.
class LumaRows
{
public:
    static constexpr std::uint8_t midGrey = 128;

    /// Both above 0. Throws std::bad_alloc.
    LumaRows(int width, int height)
    {
        m_image.width = width;
        m_image.height = height;
        m_image.pixels.reserve(bytes(height));
    }

    int width() const { return m_image.width; }
    int height() const { return m_image.height; }

    /// The first of `count` rows from y on, one behind the other; all inside the image.
    /// Stays valid until finish().
    std::uint8_t *rows(int y, int count)
    {
        // Nothing moves: the memory is there.
        const std::scoped_lock lock(m_mutex);
        if (m_image.pixels.size() < bytes(y + count)) {
            m_image.pixels.resize(bytes(y + count), midGrey);
        }
        return m_image.row(y);
    }

    /// Says that all rows above `end` are final.
    void advance(int end) { m_final = end; }

    /// The whole image.
    LumaImage finish()
    {
        m_image.pixels.resize(bytes(m_image.height), midGrey);
        return std::move(m_image);
    }

private:
    std::size_t bytes(int rows) const
    {
        return static_cast<std::size_t>(rows) * static_cast<std::size_t>(m_image.width);
    }

    LumaImage m_image;
    std::mutex m_mutex;
    int m_final = 0;
};

} // namespace quillmark
