// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/QrDecode.h"

#include <ZXing/ReadBarcode.h>

#include <QByteArray>

#include <exception>

namespace quillmark {
namespace {

constexpr int smallestSymbol = 21; // modules of version 1, ISO/IEC 18004 section 6.1

/// The text of a decoded symbol. Bytes without a declared character set are UTF-8 by
/// common practice, where they can be; otherwise the library's guess stands. Segments in
/// other modes have character sets of their own and stay as they are.
QString textOf(ZXing::Result result)
{
    const ZXing::ByteArray &bytes = result.bytes();
    const QByteArray content(reinterpret_cast<const char *>(bytes.data()),
                             static_cast<qsizetype>(bytes.size()));
    if (!result.hasECI() && content.isValidUtf8()) {
        result.setCharacterSet("UTF8");
    }
    return QString::fromStdString(result.text());
}

QrSymbol symbolOf(const ZXing::Result &result)
{
    QrSymbol symbol;
    symbol.text = textOf(result);
    for (std::size_t i = 0; i < symbol.corners.size(); ++i) {
        const ZXing::PointI corner = result.position()[i];
        symbol.corners[i] = {static_cast<double>(corner.x), static_cast<double>(corner.y)};
    }
    return symbol;
}

} // namespace

std::vector<QrSymbol> decodeQrSymbols(const LumaView &picture, QrEffort effort) noexcept
try {
    if (picture.isEmpty() || picture.width < smallestSymbol || picture.height < smallestSymbol) {
        return {};
    }
    ZXing::DecodeHints hints;
    hints.setFormats(ZXing::BarcodeFormat::QRCode);
    hints.setTryHarder(effort == QrEffort::thorough);
    // The frame's copies in other sizes are made by the caller, better than the library's.
    hints.setTryDownscale(false);
    hints.setTryRotate(false);
    const ZXing::ImageView view(picture.pixels, picture.width, picture.height,
                                ZXing::ImageFormat::Lum, static_cast<int>(picture.stride));

    std::vector<QrSymbol> symbols;
    for (const ZXing::Result &result : ZXing::ReadBarcodes(view, hints)) {
        symbols.push_back(symbolOf(result));
    }
    return symbols;
} catch (const std::exception &) {
    // Out of memory, or a picture on which the library trips: no code was read.
    return {};
}

} // namespace quillmark
