// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/LumaRows.h"

#include <cstdint>
#include <utility>

#include <sys/mman.h>

namespace quillmark {
namespace {

/// Has the system back what nobody has touched yet of this memory with pages of 2 MB where it can
/// (madvise(2), MADV_HUGEPAGE): taking a frame's in pages of 4 kB costs a good part of filling
/// it. Whole large pages only, so that a small picture is not given one.
void preferLargePages(std::uint8_t *memory, std::size_t bytes)
{
    constexpr std::uintptr_t page = std::uintptr_t{2} << 20U;
    const auto start = reinterpret_cast<std::uintptr_t>(memory);
    const std::uintptr_t first = (start + page - 1) / page * page;
    const std::uintptr_t end = (start + bytes) / page * page;
    if (first < end) {
        // Where the system has none, nothing is lost.
        ::madvise(memory + (first - start), end - first, MADV_HUGEPAGE);
    }
}

} // namespace

LumaRows::LumaRows(int width, int height) : m_view(nullptr, width, height, width)
{
    m_image.width = width;
    m_image.height = height;
    m_image.pixels.reserve(bytes(height));
    preferLargePages(m_image.pixels.data(), bytes(height));
    m_view.pixels = m_image.pixels.data();
}

std::uint8_t *LumaRows::rows(int y, int count)
{
    const std::lock_guard lock(m_mutex);
    fill(y + count);
    return m_image.row(y);
}

void LumaRows::advance(int end)
{
    const std::lock_guard lock(m_mutex);
    if (end > m_final) {
        fill(end);
        m_final = end;
        wake();
    }
}

void LumaRows::close()
{
    advance(height());
}

void LumaRows::abandon()
{
    const std::lock_guard lock(m_mutex);
    m_isAbandoned = true;
    wake();
}

int LumaRows::await(int end)
{
    std::unique_lock lock(m_mutex);
    m_wanted = end;
    m_isAwaited = true;
    m_progress.wait(lock, [this] { return isWorthWaking(); });
    m_isAwaited = false;
    return m_final;
}

LumaImage LumaRows::finish()
{
    close();
    return std::move(m_image);
}

/// What lies behind the last row that was asked for belongs to nobody yet, so that it can be
/// written while others write their rows above; the memory never moves.
void LumaRows::fill(int end)
{
    if (m_image.pixels.size() < bytes(end)) {
        m_image.pixels.resize(bytes(end), midGrey);
    }
}

void LumaRows::wake()
{
    // Whoever waits wants many rows, which come a few at a time.
    if (m_isAwaited && isWorthWaking()) {
        m_progress.notify_all();
    }
}

} // namespace quillmark
