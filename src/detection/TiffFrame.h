// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameFile.h"
#include "detection/SampleAssembler.h"
#include "detection/TiffPlane.h"
#include "detection/TiffShape.h"

#include <functional>
#include <memory>
#include <vector>

namespace quillmark {

/// Some pixels next to each other, as SampleConverter takes them.
struct SampleRow {
    int x = 0;
    int y = 0;
    int count = 0;
    const void *samples = nullptr; ///< valid during the call that hands them over
};

using SampleRowVisitor = std::function<void(const SampleRow &)>;

/// The first image of a TIFF file, handed out in rows.
class TiffFrame
{
public:
    /// Nothing for a file that cannot be decoded, or not within reason. The file outlives
    /// the frame.
    static std::unique_ptr<TiffFrame> open(const FrameFile &file, FrameChannels wanted);

    TiffFrame(const TiffFrame &) = delete;
    TiffFrame &operator=(const TiffFrame &) = delete;

    int width() const { return m_shape.width; }
    int height() const { return m_shape.height; }
    const SampleLayout &layout() const { return m_shape.layout; }

    /// Rows come from the top but for those of this many, counted from the first row, which
    /// are handed out piece by piece: 1 where every row comes at once.
    int rowsTogether() const { return m_shape.tiled ? m_shape.blockHeight : 1; }

    /// Hands out every row that can be decoded, from the top, in the pieces that tiles make
    /// of it: of a damaged strip those before the damage, of a damaged tile none.
    void visitAll(const SampleRowVisitor &visit);

    /// The same for some of the rows, from all over the image, in a small part of the time
    /// where the file is laid out so that this can be.
    void visitSome(const SampleRowVisitor &visit);

private:
    TiffFrame(TiffHandle tiff, const TiffShape &shape);

    bool visitStripRow(int y, const SampleRowVisitor &visit);
    void visitStrip(int number, const SampleRowVisitor &visit);
    void visitBlock(int number, const SampleRowVisitor &visit);
    int blockCount() const;

    TiffShape m_shape;
    std::vector<TiffPlane> m_planes;
    SampleAssembler m_assembler;
    std::vector<const std::uint8_t *> m_stored; ///< per plane: what is being handed out
};

} // namespace quillmark
