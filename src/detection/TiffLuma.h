// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/LumaRows.h"
#include "detection/SampleConverter.h"
#include "detection/SampleLevels.h"
#include "detection/TiffFrame.h"
#include "detection/TiffPieces.h"
#include "detection/TiffQueue.h"
#include "detection/TiffWorkers.h"
#include "detection/ToneStore.h"
#include "detection/WorkerThreads.h"

#include <atomic>
#include <cstdint>
#include <vector>

namespace quillmark {

/// Decodes a TIFF image to luma in several threads at once, each working on a piece of it. What
/// comes out does not depend on their number.
class TiffLuma
{
public:
    /// At most `threads` are at work. Frame and rows outlive this.
    TiffLuma(TiffFrame &frame, LumaRows &rows, int threads = frameThreads());

    /// Decodes all that can be, saying meanwhile how many rows are final; false where there is
    /// nothing. Ends early once a stop was asked for. To be called once. Throws std::bad_alloc.
    bool read();

private:
    class Place;

    void findLevels();
    void sampleAtOnce(TiffQueue &queue, TiffReader &reader, int number);
    void sampleByRows(TiffQueue &queue, TiffReader &reader, int number);
    void sampleRow(const void *tones, int count);
    void convertNominal(const TiffPiece &piece, const std::vector<std::uint8_t> &tones, int rows);

    void convert(TiffQueue &queue, TiffReader &reader, int worker, int number);
    void convertKept(const TiffPiece &piece, int sample);

    TiffFrame &m_frame;
    LumaRows &m_rows;
    SampleLuma m_luma;
    TiffPieces m_all;
    TiffPieces m_some;
    TiffWorkers m_workers;
    std::atomic<bool> m_isDecoded = false;

    // What levels are found from. While that is done, a piece that has its turn in the queue
    // is the only one to touch this.
    LevelSampler m_sampler;
    int m_step;      ///< so many pixels further is the next that is looked at
    int m_first = 0; ///< of the next row
    ToneStore m_kept;
    std::vector<bool> m_nominal; ///< which pieces are converted, provided there are no levels
    bool m_hasLevels = false;
};

} // namespace quillmark
