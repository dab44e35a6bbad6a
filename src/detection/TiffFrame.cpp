// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffFrame.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace quillmark {
namespace {

/// How many rows give a picture of the whole, where single rows can be had.
constexpr int someRows = 256;

/// How many strips or tiles do, and at least which part of them.
constexpr int someBlocks = 16;
constexpr int someBlocksPart = 10;

/// An image of no more pixels than this is decoded in full sooner than one could choose.
constexpr std::int64_t fewPixels = 1'000'000;

int ceilDivided(int value, int by)
{
    return (value - 1) / by + 1;
}

} // namespace

std::unique_ptr<TiffFrame> TiffFrame::open(const FrameFile &file, FrameChannels wanted)
{
    TiffHandle tiff(file);
    if (!tiff) {
        return nullptr;
    }
    const std::optional<TiffShape> shape = tiffShape(tiff, file.size(), wanted);
    if (!shape) {
        return nullptr;
    }
    std::unique_ptr<TiffFrame> frame(new TiffFrame(std::move(tiff), *shape));
    return frame->m_planes.size() == static_cast<std::size_t>(shape->planes) ? std::move(frame)
                                                                             : nullptr;
}

TiffFrame::TiffFrame(TiffHandle tiff, const TiffShape &shape)
    : m_shape(shape), m_assembler(m_shape), m_stored(static_cast<std::size_t>(shape.planes))
{
    const FrameFile &file = tiff.file();
    m_planes.emplace_back(std::move(tiff), m_shape, 0);
    for (int i = 1; i < shape.planes; ++i) {
        if (TiffHandle another(file); another) {
            m_planes.emplace_back(std::move(another), m_shape, i);
        }
    }
}

int TiffFrame::blockCount() const
{
    return ceilDivided(m_shape.width, m_shape.blockWidth) *
           ceilDivided(m_shape.height, m_shape.blockHeight);
}

void TiffFrame::visitAll(const SampleRowVisitor &visit)
{
    const bool whole = m_shape.tiled || m_shape.hasUnits();
    for (int i = 0; i < blockCount(); ++i) {
        if (whole) {
            visitBlock(i, visit);
        } else {
            visitStrip(i, visit);
        }
    }
}

void TiffFrame::visitSome(const SampleRowVisitor &visit)
{
    if (std::int64_t{width()} * height() <= fewPixels) {
        visitAll(visit);
        return;
    }
    const bool whole = m_shape.tiled || m_shape.hasUnits();
    if (!whole && !m_shape.compressed) {
        const int step = ceilDivided(m_shape.height, someRows);
        for (int y = 0; y < m_shape.height; y += step) {
            visitStripRow(y, visit);
        }
        return;
    }
    const int count = blockCount();
    int step = std::max(count / std::max(someBlocks, count / someBlocksPart), 1);
    // A step that has a divisor in common with a row of tiles would meet some columns only.
    while (std::gcd(step, ceilDivided(m_shape.width, m_shape.blockWidth)) > 1) {
        ++step;
    }
    for (int i = 0; i < count; i += step) {
        if (whole) {
            visitBlock(i, visit);
        } else {
            visitStrip(i, visit);
        }
    }
}

bool TiffFrame::visitStripRow(int y, const SampleRowVisitor &visit)
{
    for (std::size_t i = 0; i < m_planes.size(); ++i) {
        m_stored[i] = m_planes[i].stripRow(y);
        if (m_stored[i] == nullptr) {
            return false;
        }
    }
    visit({0, y, m_shape.width, m_assembler.assemble(m_stored, m_shape.width)});
    return true;
}

void TiffFrame::visitStrip(int number, const SampleRowVisitor &visit)
{
    const int from = number * m_shape.blockHeight;
    const int to = std::min(from + m_shape.blockHeight, m_shape.height);
    int y = from;
    while (y < to && visitStripRow(y, visit)) {
        ++y;
    }
}

void TiffFrame::visitBlock(int number, const SampleRowVisitor &visit)
{
    const int across = ceilDivided(m_shape.width, m_shape.blockWidth);
    const int x = number % across * m_shape.blockWidth;
    const int y = number / across * m_shape.blockHeight;
    const int count = std::min(m_shape.blockWidth, m_shape.width - x);
    const int rows = std::min(m_shape.blockHeight, m_shape.height - y);
    std::vector<const std::uint8_t *> blocks;
    for (TiffPlane &plane : m_planes) {
        blocks.push_back(plane.block(x, y));
        if (blocks.back() == nullptr) {
            return;
        }
    }
    for (int row = 0; row < rows; ++row) {
        if (m_shape.hasUnits()) {
            visit({x, y + row, count, m_assembler.assembleUnits(blocks[0], row, count)});
            continue;
        }
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            m_stored[i] = blocks[i] + static_cast<std::size_t>(row) * m_shape.rowBytes;
        }
        visit({x, y + row, count, m_assembler.assemble(m_stored, count)});
    }
}

} // namespace quillmark
