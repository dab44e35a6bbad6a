// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameDecoder.h"
#include "detection/LumaView.h"

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>

namespace quillmark {

/// A luma image that comes into being from the top, while others may already look at the rows
/// that are final. Memory is set aside at once but touched only with the rows that are asked
/// for, so that writing a row finds it in the cache and a declared size costs next to nothing
/// before there are data: one page, which may be a large one. Rows that nobody writes are mid-grey.
/// Safe from several threads.
class LumaRows
{
public:
    static constexpr std::uint8_t midGrey = 128;

    /// Both above 0. Throws std::bad_alloc.
    LumaRows(int width, int height);

    int width() const { return m_view.width; }
    int height() const { return m_view.height; }

    /// The first of `count` rows from y on, one behind the other; all inside the image. No two
    /// threads may write the same row. Stays valid as long as this object, or the image that
    /// finish() gives.
    std::uint8_t *rows(int y, int count);

    /// Says that all rows above `end` are final. Of several calls the largest end holds.
    void advance(int end);

    /// Says that nothing more comes: the whole image is final.
    void close();

    /// Says that there is no image after all.
    void abandon();

    /// Blocks until the rows above `end`, which is up to height(), are final, and gives how many
    /// are; fewer than `end` only where the image was abandoned. For one thread at a time.
    int await(int end);

    /// The whole image, of which the final rows may be read.
    LumaView view() const { return m_view; }

    /// Closes the image and gives it away. To be called once, when nobody looks at it any more.
    LumaImage finish();

private:
    std::size_t bytes(int rows) const
    {
        return static_cast<std::size_t>(rows) * static_cast<std::size_t>(m_view.width);
    }
    bool isWorthWaking() const { return m_isAbandoned || m_final >= m_wanted; }
    void fill(int end);
    void wake();

    LumaImage m_image;
    LumaView m_view;
    std::mutex m_mutex;
    std::condition_variable m_progress;
    int m_final = 0;
    int m_wanted = 0;
    bool m_isAwaited = false;
    bool m_isAbandoned = false;
};

} // namespace quillmark
