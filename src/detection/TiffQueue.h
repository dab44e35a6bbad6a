// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/TiffPieces.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <vector>

namespace quillmark {

/// Hands out the pieces of an image to several threads, in their order, and says how far they
/// have come. Everything may be called from any of them.
class TiffQueue
{
public:
    using RowCount = std::function<void(int)>;

    /// `advance` is called with the number of rows that are over, counted from the top, one
    /// call after another and never with less than before.
    TiffQueue(const TiffPieces &pieces, int workers, RowCount advance);

    /// The number of the next piece for a worker (0 to `workers` - 1), which is over with those
    /// that it had before; nothing where there is none, or after close().
    std::optional<int> take(int worker);

    /// The worker is over with its piece, which is as wide as the image, down to this row.
    void reach(int worker, int row);

    /// Blocks until leave() was called for all pieces before this one; false after close().
    bool awaitTurn(int piece);

    /// Ends the turn of a piece.
    void leave(int piece);

    /// Lets nobody have or await anything more.
    void close();

private:
    int first() const;

    const TiffPieces &m_pieces;
    const int m_count;
    RowCount m_advance;
    std::mutex m_mutex;
    std::condition_variable m_turnChanged;
    std::vector<int> m_taken; ///< per worker: its piece, or m_count
    int m_next = 0;
    int m_turn = 0;
    bool m_isClosed = false;
};

} // namespace quillmark
