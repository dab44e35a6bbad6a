// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameFile.h"
#include "detection/SampleAssembler.h"
#include "detection/TiffHandle.h"
#include "detection/TiffPieces.h"
#include "detection/TiffPlane.h"
#include "detection/TiffShape.h"

#include <cstdint>
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

/// Decodes the pieces of a TIFF image for one thread; each thread that reads the same image has
/// a reader of its own.
class TiffReader
{
public:
    /// Nothing where libtiff does not open the file once more for each plane. The file and
    /// the shape, which was read from `tiff`, outlive the reader.
    static std::unique_ptr<TiffReader> open(TiffHandle tiff, const TiffShape &shape);

    TiffReader(const TiffReader &) = delete;
    TiffReader &operator=(const TiffReader &) = delete;

    /// Hands out every row that can be decoded, from the top: of a damaged strip those before
    /// the damage, of a damaged tile none.
    void read(const TiffPiece &piece, const SampleRowVisitor &visit);

private:
    explicit TiffReader(const TiffShape &shape);

    void readRows(const TiffPiece &piece, const SampleRowVisitor &visit);
    void readBlock(const TiffPiece &piece, const SampleRowVisitor &visit);

    const TiffShape &m_shape;
    std::vector<TiffPlane> m_planes;
    SampleAssembler m_assembler;
    std::vector<const std::uint8_t *> m_stored; ///< per plane: what is being handed out
};

} // namespace quillmark
