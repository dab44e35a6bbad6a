// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "bench/recall/Readers.h"

#include <zbar.h>

#include <memory>

namespace quillmark::bench {

namespace {

using Scanner = std::unique_ptr<zbar::zbar_image_scanner_t, void (*)(zbar::zbar_image_scanner_t *)>;
using Image = std::unique_ptr<zbar::zbar_image_t, void (*)(zbar::zbar_image_t *)>;

std::vector<QByteArray> readWith(bool withInversion, const LumaImage &picture)
{
    const Scanner scanner(zbar::zbar_image_scanner_create(), zbar::zbar_image_scanner_destroy);
    zbar::zbar_image_scanner_set_config(scanner.get(), zbar::ZBAR_NONE, zbar::ZBAR_CFG_ENABLE, 0);
    zbar::zbar_image_scanner_set_config(scanner.get(), zbar::ZBAR_QRCODE, zbar::ZBAR_CFG_ENABLE, 1);
    // The bytes, not the text: that one depends on a guess of the character set.
    zbar::zbar_image_scanner_set_config(scanner.get(), zbar::ZBAR_QRCODE, zbar::ZBAR_CFG_BINARY, 1);
    zbar::zbar_image_scanner_set_config(scanner.get(), zbar::ZBAR_NONE,
                                        zbar::ZBAR_CFG_TEST_INVERTED, withInversion ? 1 : 0);

    constexpr unsigned long grey = 0x30303859; // the letters Y800
    const Image image(zbar::zbar_image_create(), zbar::zbar_image_destroy);
    zbar::zbar_image_set_format(image.get(), grey);
    zbar::zbar_image_set_size(image.get(), static_cast<unsigned>(picture.width),
                              static_cast<unsigned>(picture.height));
    zbar::zbar_image_set_data(image.get(), picture.pixels.data(), picture.pixels.size(), nullptr);
    zbar::zbar_scan_image(scanner.get(), image.get());

    std::vector<QByteArray> contents;
    for (const zbar::zbar_symbol_t *symbol = zbar::zbar_image_first_symbol(image.get());
         symbol != nullptr; symbol = zbar::zbar_symbol_next(symbol)) {
        contents.emplace_back(zbar::zbar_symbol_get_data(symbol),
                              static_cast<qsizetype>(zbar::zbar_symbol_get_data_length(symbol)));
    }
    return contents;
}

} // namespace

Reader zbarReader(bool withInversion)
{
    return {withInversion ? "zbar+inverted" : "zbar",
            [withInversion](const LumaImage &picture) { return readWith(withInversion, picture); }};
}

} // namespace quillmark::bench
