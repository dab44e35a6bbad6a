// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SecondOpinion.h"

#include "detection/Reduce.h"

#include <QByteArray>

#include <zbar.h>

#include <algorithm>
#include <cmath>
#include <exception>
#include <memory>

namespace quillmark {
namespace {

constexpr double quietModules = 5;
constexpr double wantedModule = 4; // pixels

using Scanner = std::unique_ptr<zbar::zbar_image_scanner_t, void (*)(zbar::zbar_image_scanner_t *)>;
using Image = std::unique_ptr<zbar::zbar_image_t, void (*)(zbar::zbar_image_t *)>;

Scanner makeScanner()
{
    using namespace zbar;
    Scanner scanner(zbar_image_scanner_create(), zbar_image_scanner_destroy);
    zbar_image_scanner_set_config(scanner.get(), ZBAR_NONE, ZBAR_CFG_ENABLE, 0);
    zbar_image_scanner_set_config(scanner.get(), ZBAR_QRCODE, ZBAR_CFG_ENABLE, 1);
    // The bytes, not the text: that one depends on a guess of the character set.
    zbar_image_scanner_set_config(scanner.get(), ZBAR_QRCODE, ZBAR_CFG_BINARY, 1);
    zbar_image_scanner_set_config(scanner.get(), ZBAR_NONE, ZBAR_CFG_TEST_INVERTED, 1);
    return scanner;
}

/// The part of the frame that holds the code and its quiet zone.
LumaView placeOf(const LumaView &frame, const SymbolCorners &corners, double module)
{
    const auto [left, right] = std::ranges::minmax(corners, {}, &PixelPoint::x);
    const auto [top, bottom] = std::ranges::minmax(corners, {}, &PixelPoint::y);
    const double margin = quietModules * module;
    const auto inside = [](double place, int limit) {
        return static_cast<int>(std::clamp(place, 0.0, 1.0 * limit));
    };
    const int firstColumn = inside(left.x - margin, frame.width);
    const int firstRow = inside(top.y - margin, frame.height);
    return frame.cropped(firstColumn, firstRow, inside(right.x + margin, frame.width) - firstColumn,
                         inside(bottom.y + margin, frame.height) - firstRow);
}

std::optional<QString> read(const LumaImage &picture)
{
    using namespace zbar;
    constexpr unsigned long grey = 0x30303859; // the letters Y800
    const Scanner scanner = makeScanner();
    const Image image(zbar_image_create(), zbar_image_destroy);
    zbar_image_set_format(image.get(), grey);
    zbar_image_set_size(image.get(), static_cast<unsigned>(picture.width),
                        static_cast<unsigned>(picture.height));
    zbar_image_set_data(image.get(), picture.pixels.data(), picture.pixels.size(), nullptr);
    zbar_scan_image(scanner.get(), image.get());
    const zbar_symbol_t *symbol = zbar_image_first_symbol(image.get());
    if (symbol == nullptr) {
        return std::nullopt;
    }
    const QByteArray content(zbar_symbol_get_data(symbol),
                             static_cast<qsizetype>(zbar_symbol_get_data_length(symbol)));
    return content.isValidUtf8() ? std::optional(QString::fromUtf8(content)) : std::nullopt;
}

} // namespace

std::optional<QString> askForSecondOpinion(const LumaView &frame, const SymbolCorners &corners,
                                           double module) noexcept
try {
    const LumaView place = placeOf(frame, corners, module);
    if (place.isEmpty()) {
        return std::nullopt;
    }
    const int reduction = static_cast<int>(module / wantedModule);
    const int enlargement = static_cast<int>(std::lround(wantedModule / module));
    return read(reduction > 1     ? reduceByBox(place, reduction)
                : enlargement > 1 ? enlarge(place, std::min(enlargement, 4))
                                  : reduceByBox(place, 1));
} catch (const std::exception &) {
    // Out of memory.
    return std::nullopt;
}

} // namespace quillmark
