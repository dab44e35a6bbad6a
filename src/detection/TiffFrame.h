// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameFile.h"
#include "detection/TiffPieces.h"
#include "detection/TiffReader.h"
#include "detection/TiffShape.h"

#include <memory>

namespace quillmark {

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

    // For reading in several threads.

    const FrameFile &file() const { return m_file; }
    TiffPieces allPieces() const { return TiffPieces::all(m_shape); }
    TiffPieces somePieces() const { return TiffPieces::some(m_shape); }

    /// How many readers may be at work at the same time without holding too much memory; at
    /// least one.
    int readerLimit() const { return m_readerLimit; }

    /// The one that visitAll() and visitSome() use.
    TiffReader &reader() { return *m_reader; }

    /// One more; nothing where the file cannot be opened once more. May be called from several
    /// threads.
    std::unique_ptr<TiffReader> openReader() const;

private:
    TiffFrame(const FrameFile &file, const TiffShape &shape) : m_file(file), m_shape(shape) {}

    void visit(const TiffPieces &pieces, const SampleRowVisitor &visit);

    const FrameFile &m_file;
    TiffShape m_shape;
    int m_readerLimit = 1;
    std::unique_ptr<TiffReader> m_reader;
};

} // namespace quillmark
