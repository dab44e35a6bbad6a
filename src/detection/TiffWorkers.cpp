// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffWorkers.h"

#include "detection/WorkerThreads.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace quillmark {

TiffWorkers::TiffWorkers(TiffFrame &frame, int threads)
    : m_frame(frame),
      m_readers(static_cast<std::size_t>(
          std::max(std::min({threads, frame.readerLimit(), frame.allPieces().count()}) - 1, 0)))
{}

/// Readers stay from one call of share() to the next. Each worker opens its own, which takes
/// as long as the file has strips.
TiffReader *TiffWorkers::reader(int worker)
{
    if (worker == 0) {
        return &m_frame.reader();
    }
    std::unique_ptr<TiffReader> &own = m_readers[static_cast<std::size_t>(worker - 1)];
    if (!own) {
        own = m_frame.openReader();
    }
    return own.get();
}

void TiffWorkers::share(TiffQueue &queue, const Work &work)
{
    runWorkers(count(), [&](int worker) {
        try {
            TiffReader *own = reader(worker);
            while (own != nullptr && !m_frame.file().isEnded()) {
                const std::optional<int> piece = queue.take(worker);
                if (!piece) {
                    return;
                }
                work(*own, worker, *piece);
            }
        } catch (...) {
            queue.close();
            throw;
        }
    });
}

} // namespace quillmark
