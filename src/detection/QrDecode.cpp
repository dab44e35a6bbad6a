// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/QrDecode.h"

#include <ZXing/ReadBarcode.h>

#include <QByteArray>

#include <algorithm>
#include <cstdint>
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

/// Draws the symbol cleanly, with its quiet zone, for the library; as it is or mirrored.
std::optional<QString> decodeDrawn(const ModuleBits &modules, bool mirrored)
{
    constexpr int quiet = 4;
    constexpr int pixelsPerModule = 2;
    const int side = pixelsPerModule * (modules.side + 2 * quiet);
    LumaImage image{side, side, {}};
    image.pixels.assign(static_cast<std::size_t>(side) * static_cast<std::size_t>(side), 255);
    for (int row = 0; row < modules.side; ++row) {
        for (int column = 0; column < modules.side; ++column) {
            const int module = mirrored ? column * modules.side + row : row * modules.side + column;
            if (!modules.dark[static_cast<std::size_t>(module)]) {
                continue;
            }
            for (int y = 0; y < pixelsPerModule; ++y) {
                const int left = (column + quiet) * pixelsPerModule;
                std::uint8_t *pixels = image.row((row + quiet) * pixelsPerModule + y) + left;
                std::fill_n(pixels, pixelsPerModule, std::uint8_t{0});
            }
        }
    }
    ZXing::DecodeHints hints;
    hints.setFormats(ZXing::BarcodeFormat::QRCode);
    hints.setIsPure(true);
    hints.setBinarizer(ZXing::Binarizer::FixedThreshold);
    const ZXing::ImageView view(image.pixels.data(), side, side, ZXing::ImageFormat::Lum);
    const ZXing::Result result = ZXing::ReadBarcode(view, hints);
    return result.isValid() ? std::optional(textOf(result)) : std::nullopt;
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

std::optional<QString> decodeModules(const ModuleBits &modules) noexcept
try {
    if (auto text = decodeDrawn(modules, false)) {
        return text;
    }
    return decodeDrawn(modules, true);
} catch (const std::exception &) {
    return std::nullopt;
}

} // namespace quillmark
