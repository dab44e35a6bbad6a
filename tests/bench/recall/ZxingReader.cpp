// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "bench/recall/Readers.h"

#include <ZXing/ReadBarcode.h>

#include <cstdint>

namespace quillmark::bench {
namespace {

std::vector<QByteArray> readWith(const ZXing::DecodeHints &hints, const LumaImage &picture)
{
    const ZXing::ImageView view(picture.pixels.data(), picture.width, picture.height,
                                ZXing::ImageFormat::Lum);
    std::vector<QByteArray> contents;
    for (const ZXing::Result &result : ZXing::ReadBarcodes(view, hints)) {
        // The bytes, not the text: that one depends on a guess of the character set.
        const ZXing::ByteArray &bytes = result.bytes();
        contents.emplace_back(reinterpret_cast<const char *>(bytes.data()),
                              static_cast<qsizetype>(bytes.size()));
    }
    return contents;
}

ZXing::DecodeHints hintsFor(bool withEffort)
{
    ZXing::DecodeHints hints;
    hints.setFormats(ZXing::BarcodeFormat::QRCode);
    hints.setTryHarder(withEffort);
    hints.setTryRotate(withEffort);
    hints.setTryDownscale(withEffort);
    return hints;
}

std::vector<QByteArray> readPlainly(const LumaImage &picture)
{
    return readWith(hintsFor(false), picture);
}

/// Tries harder, reduced copies, and the inverted picture where nothing was read.
std::vector<QByteArray> readWithEffort(const LumaImage &picture)
{
    const ZXing::DecodeHints hints = hintsFor(true);
    std::vector<QByteArray> contents = readWith(hints, picture);
    if (contents.empty()) {
        LumaImage inverted = picture;
        for (std::uint8_t &pixel : inverted.pixels) {
            pixel = static_cast<std::uint8_t>(255 - pixel);
        }
        contents = readWith(hints, inverted);
    }
    return contents;
}

} // namespace

Reader zxingReader(bool withEffort)
{
    return withEffort ? Reader{"zxing+effort", readWithEffort} : Reader{"zxing", readPlainly};
}

} // namespace quillmark::bench
