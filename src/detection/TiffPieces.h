// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/TiffShape.h"

#include <optional>

namespace quillmark {

/// A rectangle of an image, inside it, that is read in one go.
struct TiffPiece {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// How an image is cut up for reading: into its strips or tiles, or into bands of rows where
/// nothing has to be decoded. The pieces come from the top.
class TiffPieces
{
public:
    /// The shape outlives the pieces.
    static TiffPieces all(const TiffShape &shape);

    /// From all over the image, in a small part of the time where the file is laid out so that
    /// this can be.
    static TiffPieces some(const TiffShape &shape);

    int count() const;

    /// `number` is from 0 to count() - 1.
    TiffPiece at(int number) const;

    /// Which of these is a piece of all(), if any.
    std::optional<int> find(int numberInAll) const;

private:
    explicit TiffPieces(const TiffShape &shape);

    int bandsOfStrip() const;

    const TiffShape *m_shape;
    int m_bandRows;       ///< 0 for whole strips or tiles
    int m_step = 1;       ///< so many pieces further is the next
    bool m_loose = false; ///< single rows, m_step apart
};

} // namespace quillmark
