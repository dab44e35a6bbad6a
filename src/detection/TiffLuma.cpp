// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffLuma.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>
#include <utility>

namespace quillmark {
namespace {

/// From how many pixels levels are found, at most and roughly.
constexpr std::int64_t levelPixels = 2'000'000;

/// Tones of the pieces that levels are found from, so that these need not be decoded twice. In
/// large frames there are too many of them, beside the luma itself.
constexpr std::size_t keptBytes = 24U << 20U;

/// Tones that one worker holds.
constexpr std::size_t heldBytes = 4U << 20U;

/// How many rows are set aside at once, and said to be final.
constexpr int rowsTogether = 64;

std::size_t toneCount(const TiffPiece &piece)
{
    return static_cast<std::size_t>(piece.width) * static_cast<std::size_t>(piece.height);
}

} // namespace

/// Where the rows of a piece go.
class TiffLuma::Place
{
public:
    Place(LumaRows &rows, const TiffPiece &piece) : m_rows(rows), m_piece(piece), m_end(piece.y) {}

    /// Whether row() will set aside memory for rows up to rowsTogether() below.
    bool isAtEnd(int y) const { return y >= m_end; }

    /// Rows are asked for from the top.
    std::uint8_t *row(int y)
    {
        if (isAtEnd(y)) {
            const int count = std::min(rowsTogether, m_piece.y + m_piece.height - y);
            m_start = y;
            m_end = y + count;
            m_pixels = m_rows.rows(y, count);
        }
        return m_pixels + static_cast<std::ptrdiff_t>(y - m_start) * m_rows.width() + m_piece.x;
    }

private:
    LumaRows &m_rows;
    TiffPiece m_piece;
    int m_start = 0;
    int m_end;
    std::uint8_t *m_pixels = nullptr;
};

TiffLuma::TiffLuma(TiffFrame &frame, LumaRows &rows, int threads)
    : m_frame(frame),
      m_rows(rows),
      m_luma(frame.layout()),
      m_all(frame.allPieces()),
      m_some(frame.somePieces()),
      m_workers(frame, threads),
      m_sampler(nominalWhite(frame.layout().type)),
      m_step(static_cast<int>(std::int64_t{frame.width()} * frame.height() / levelPixels + 1)),
      m_kept(m_some.count(), m_luma.isDeep() && m_some.find(0) ? keptBytes : 0),
      m_nominal(static_cast<std::size_t>(m_some.count()))
{}

bool TiffLuma::read()
{
    if (m_luma.isDeep()) {
        findLevels();
    }
    TiffQueue queue(m_all, m_workers.count(), [this](int rows) { m_rows.advance(rows); });
    m_workers.share(queue, [&](TiffReader &reader, int worker, int number) {
        convert(queue, reader, worker, number);
    });
    return m_isDecoded;
}

void TiffLuma::findLevels()
{
    TiffQueue queue(m_some, m_workers.count(), [](int) {});
    m_workers.share(queue, [&](TiffReader &reader, int /*worker*/, int number) {
        if (toneCount(m_some.at(number)) * m_luma.toneBytes() <= heldBytes) {
            sampleAtOnce(queue, reader, number);
        } else {
            sampleByRows(queue, reader, number);
        }
    });
    const Levels nominal{0, nominalWhite(m_frame.layout().type)};
    const Levels levels = std::move(m_sampler).levels();
    m_hasLevels = levels.black != nominal.black || levels.white != nominal.white;
    m_luma.setLevels(levels);
}

/// Decodes a piece beside the others, and looks at it when those before it are over: which pixels
/// of a row are looked at depends on how many rows there were before.
void TiffLuma::sampleAtOnce(TiffQueue &queue, TiffReader &reader, int number)
{
    const TiffPiece piece = m_some.at(number);
    const std::size_t rowBytes = static_cast<std::size_t>(piece.width) * m_luma.toneBytes();
    std::vector<std::uint8_t> tones(toneCount(piece) * m_luma.toneBytes());
    int rows = 0;
    reader.read(piece, [&](const SampleRow &row) {
        m_luma.tones(row.samples, row.count, &tones[static_cast<std::size_t>(rows) * rowBytes]);
        ++rows;
    });
    tones.resize(static_cast<std::size_t>(rows) * rowBytes);
    if (!queue.awaitTurn(number)) {
        return;
    }
    for (int row = 0; row < rows; ++row) {
        sampleRow(&tones[static_cast<std::size_t>(row) * rowBytes], piece.width);
    }
    const bool isPieceOfAll = m_some.find(0).has_value();
    const bool isLeftOver = isPieceOfAll && !m_kept.keep(number, tones);
    m_nominal[static_cast<std::size_t>(number)] = isLeftOver;
    queue.leave(number);
    if (isLeftOver) {
        convertNominal(piece, tones, rows);
    }
}

/// The same for a piece that is too large to be held.
void TiffLuma::sampleByRows(TiffQueue &queue, TiffReader &reader, int number)
{
    if (!queue.awaitTurn(number)) {
        return;
    }
    const TiffPiece piece = m_some.at(number);
    Place place(m_rows, piece);
    std::vector<std::uint8_t> tones(static_cast<std::size_t>(piece.width) * m_luma.toneBytes());
    reader.read(piece, [&](const SampleRow &row) {
        m_luma.tones(row.samples, row.count, tones.data());
        sampleRow(tones.data(), row.count);
        m_luma.convertTones(tones.data(), row.count, place.row(row.y));
        m_isDecoded = true;
    });
    m_nominal[static_cast<std::size_t>(number)] = true;
    queue.leave(number);
}

void TiffLuma::sampleRow(const void *tones, int count)
{
    m_luma.sampleTones(tones, count, m_first, m_step, m_sampler);
    // Not the same columns in every row: one of them may be defective. Any large prime does.
    m_first = (m_first + 7919) % m_step;
}

/// Most frames turn out to need no levels, and then this need not be decoded again.
void TiffLuma::convertNominal(const TiffPiece &piece, const std::vector<std::uint8_t> &tones,
                              int rows)
{
    const std::size_t rowBytes = static_cast<std::size_t>(piece.width) * m_luma.toneBytes();
    Place place(m_rows, piece);
    for (int row = 0; row < rows; ++row) {
        m_luma.convertTones(&tones[static_cast<std::size_t>(row) * rowBytes], piece.width,
                            place.row(piece.y + row));
        m_isDecoded = true;
    }
}

void TiffLuma::convert(TiffQueue &queue, TiffReader &reader, int worker, int number)
{
    const TiffPiece piece = m_all.at(number);
    if (const std::optional<int> sample = m_some.find(number)) {
        if (m_kept.has(*sample)) {
            convertKept(piece, *sample);
            return;
        }
        if (m_nominal[static_cast<std::size_t>(*sample)] && !m_hasLevels) {
            return;
        }
    }
    Place place(m_rows, piece);
    reader.read(piece, [&](const SampleRow &row) {
        if (place.isAtEnd(row.y) && row.y > piece.y && piece.width == m_frame.width()) {
            queue.reach(worker, row.y);
        }
        m_luma.convert(row.samples, row.count, place.row(row.y));
        m_isDecoded = true;
    });
}

void TiffLuma::convertKept(const TiffPiece &piece, int sample)
{
    const std::span<const std::uint8_t> tones = m_kept.tones(sample);
    const std::size_t rowBytes = static_cast<std::size_t>(piece.width) * m_luma.toneBytes();
    Place place(m_rows, piece);
    for (std::size_t done = 0; done < tones.size(); done += rowBytes) {
        const int row = static_cast<int>(done / rowBytes);
        m_luma.convertTones(&tones[done], piece.width, place.row(piece.y + row));
        m_isDecoded = true;
    }
}

} // namespace quillmark
