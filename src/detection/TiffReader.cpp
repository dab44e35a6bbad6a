// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffReader.h"

#include <cstddef>
#include <utility>

namespace quillmark {

std::unique_ptr<TiffReader> TiffReader::open(TiffHandle tiff, const TiffShape &shape)
{
    std::unique_ptr<TiffReader> reader(new TiffReader(shape));
    const FrameFile &file = tiff.file();
    reader->m_planes.reserve(static_cast<std::size_t>(shape.planes));
    const auto add = [&](TiffHandle handle, int plane) {
        prepare(handle, shape);
        reader->m_planes.emplace_back(std::move(handle), shape, plane);
    };
    add(std::move(tiff), 0);
    for (int plane = 1; plane < shape.planes; ++plane) {
        TiffHandle another(file);
        if (!another) {
            return nullptr;
        }
        add(std::move(another), plane);
    }
    return reader;
}

TiffReader::TiffReader(const TiffShape &shape)
    : m_shape(shape), m_assembler(shape), m_stored(static_cast<std::size_t>(shape.planes))
{}

void TiffReader::read(const TiffPiece &piece, const SampleRowVisitor &visit)
{
    if (m_shape.isReadInRows()) {
        readRows(piece, visit);
    } else {
        readBlock(piece, visit);
    }
}

void TiffReader::readRows(const TiffPiece &piece, const SampleRowVisitor &visit)
{
    for (TiffPlane &plane : m_planes) {
        plane.expectRows(piece.y, piece.height);
    }
    for (int y = piece.y; y < piece.y + piece.height; ++y) {
        for (std::size_t i = 0; i < m_planes.size(); ++i) {
            m_stored[i] = m_planes[i].stripRow(y);
            if (m_stored[i] == nullptr) {
                return;
            }
        }
        visit({0, y, m_shape.width, m_assembler.assemble(m_stored, m_shape.width)});
    }
}

void TiffReader::readBlock(const TiffPiece &piece, const SampleRowVisitor &visit)
{
    std::vector<const std::uint8_t *> blocks;
    for (TiffPlane &plane : m_planes) {
        blocks.push_back(plane.block(piece.x, piece.y));
        if (blocks.back() == nullptr) {
            return;
        }
    }
    for (int row = 0; row < piece.height; ++row) {
        const int y = piece.y + row;
        if (m_shape.hasUnits()) {
            visit(
                {piece.x, y, piece.width, m_assembler.assembleUnits(blocks[0], row, piece.width)});
            continue;
        }
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            m_stored[i] = blocks[i] + static_cast<std::size_t>(row) * m_shape.rowBytes;
        }
        visit({piece.x, y, piece.width, m_assembler.assemble(m_stored, piece.width)});
    }
}

} // namespace quillmark
