// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffQueue.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace quillmark {

TiffQueue::TiffQueue(const TiffPieces &pieces, int workers, RowCount advance)
    : m_pieces(pieces),
      m_count(pieces.count()),
      m_advance(std::move(advance)),
      m_taken(static_cast<std::size_t>(workers), m_count)
{}

/// The first piece that is not over.
int TiffQueue::first() const
{
    return std::min(m_next, *std::min_element(m_taken.begin(), m_taken.end()));
}

std::optional<int> TiffQueue::take(int worker)
{
    const std::scoped_lock lock(m_mutex);
    int &taken = m_taken[static_cast<std::size_t>(worker)];
    const int before = first();
    taken = m_isClosed || m_next == m_count ? m_count : m_next++;
    const int after = first();
    if (after > before && after < m_count) {
        m_advance(m_pieces.at(after).y);
    }
    return taken < m_count ? std::optional(taken) : std::nullopt;
}

void TiffQueue::reach(int worker, int row)
{
    const std::scoped_lock lock(m_mutex);
    if (m_taken[static_cast<std::size_t>(worker)] == first()) {
        m_advance(row);
    }
}

bool TiffQueue::awaitTurn(int piece)
{
    std::unique_lock lock(m_mutex);
    m_turnChanged.wait(lock, [&] { return m_isClosed || m_turn == piece; });
    return !m_isClosed;
}

void TiffQueue::leave(int piece)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_turn = piece + 1;
    }
    m_turnChanged.notify_all();
}

void TiffQueue::close()
{
    {
        const std::scoped_lock lock(m_mutex);
        m_isClosed = true;
    }
    m_turnChanged.notify_all();
}

} // namespace quillmark
