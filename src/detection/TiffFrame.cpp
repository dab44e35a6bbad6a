// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffFrame.h"

#include "detection/TiffHandle.h"
#include "detection/TiffPlane.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>

namespace quillmark {
namespace {

/// What all readers of an image may hold together, where one does not hold more.
constexpr std::uint64_t readersBytes = 32U << 20U;

int readerLimitOf(const TiffHandle &tiff, const TiffShape &shape)
{
    if (shape.coding == TiffCoding::linked) {
        return 1;
    }
    // Each handle holds where all strips or tiles are and how long.
    constexpr std::uint64_t bytesOfPlace = 16;
    const std::uint32_t blocks =
        shape.tiled ? TIFFNumberOfTiles(tiff.get()) : TIFFNumberOfStrips(tiff.get());
    const std::uint64_t unpacked = shape.coding == TiffCoding::whole ? shape.blockBytes : 0;
    const std::uint64_t bytes =
        (TiffPlane::workingBytes(tiff, shape) + unpacked + bytesOfPlace * blocks) *
        static_cast<std::uint64_t>(shape.planes);
    return static_cast<int>(
        std::clamp<std::uint64_t>(readersBytes / std::max<std::uint64_t>(bytes, 1), 1, 64));
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
    std::unique_ptr<TiffFrame> frame(new TiffFrame(file, *shape));
    frame->m_readerLimit = readerLimitOf(tiff, *shape);
    frame->m_reader = TiffReader::open(std::move(tiff), frame->m_shape);
    return frame->m_reader ? std::move(frame) : nullptr;
}

std::unique_ptr<TiffReader> TiffFrame::openReader() const
{
    TiffHandle tiff(m_file);
    return tiff ? TiffReader::open(std::move(tiff), m_shape) : nullptr;
}

void TiffFrame::visitAll(const SampleRowVisitor &visit)
{
    this->visit(allPieces(), visit);
}

void TiffFrame::visitSome(const SampleRowVisitor &visit)
{
    this->visit(somePieces(), visit);
}

void TiffFrame::visit(const TiffPieces &pieces, const SampleRowVisitor &visit)
{
    for (int i = 0; i < pieces.count(); ++i) {
        m_reader->read(pieces.at(i), visit);
    }
}

} // namespace quillmark
