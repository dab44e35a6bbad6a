// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/TiffFrame.h"
#include "detection/TiffQueue.h"

#include <functional>
#include <memory>
#include <vector>

namespace quillmark {

/// Some threads that read one TIFF image, each with a reader of its own.
class TiffWorkers
{
public:
    /// At most `threads` are at work, fewer where there is not enough to do or to be had. The
    /// frame outlives this.
    TiffWorkers(TiffFrame &frame, int threads);

    int count() const { return static_cast<int>(m_readers.size()) + 1; }

    /// What is to be done with a piece of the queue by a worker, in whose thread it is called.
    using Work = std::function<void(TiffReader &reader, int worker, int piece)>;

    /// Does the work for all pieces of the queue, which is made for count() workers, or for
    /// those before a stop was asked for. Throws what the work throws; no thread is left at work
    /// in any case.
    void share(TiffQueue &queue, const Work &work);

private:
    TiffReader *reader(int worker);

    TiffFrame &m_frame;
    std::vector<std::unique_ptr<TiffReader>> m_readers; ///< of the workers behind the first
};

} // namespace quillmark
