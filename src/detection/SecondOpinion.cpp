// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SecondOpinion.h"

#include "detection/Reduce.h"

#include <QByteArray>
#include <QLibrary>

#include <zbar.h>

#include <algorithm>
#include <cmath>
#include <exception>
#include <memory>

namespace quillmark {
namespace {

constexpr double quietModules = 5;
constexpr double wantedModule = 4; // pixels

// The library is loaded when it is first asked: it brings those of cameras, windows and a message
// bus with it, which every start of the program would have to wait for.
class Library
{
public:
    static const Library *get()
    {
        static const Library library;
        return library.m_isWhole ? &library : nullptr;
    }

    decltype(&zbar::zbar_image_scanner_create) createScanner = nullptr;
    decltype(&zbar::zbar_image_scanner_destroy) destroyScanner = nullptr;
    decltype(&zbar::zbar_image_scanner_set_config) configure = nullptr;
    decltype(&zbar::zbar_image_create) createImage = nullptr;
    decltype(&zbar::zbar_image_destroy) destroyImage = nullptr;
    decltype(&zbar::zbar_image_set_format) setFormat = nullptr;
    decltype(&zbar::zbar_image_set_size) setSize = nullptr;
    decltype(&zbar::zbar_image_set_data) setData = nullptr;
    decltype(&zbar::zbar_scan_image) scan = nullptr;
    decltype(&zbar::zbar_image_first_symbol) firstSymbol = nullptr;
    decltype(&zbar::zbar_symbol_get_data) data = nullptr;
    decltype(&zbar::zbar_symbol_get_data_length) dataLength = nullptr;

private:
    Library()
        : m_file(QStringLiteral("zbar"), 0),
          m_isWhole(
              find(createScanner, "zbar_image_scanner_create") &&
              find(destroyScanner, "zbar_image_scanner_destroy") &&
              find(configure, "zbar_image_scanner_set_config") &&
              find(createImage, "zbar_image_create") && find(destroyImage, "zbar_image_destroy") &&
              find(setFormat, "zbar_image_set_format") && find(setSize, "zbar_image_set_size") &&
              find(setData, "zbar_image_set_data") && find(scan, "zbar_scan_image") &&
              find(firstSymbol, "zbar_image_first_symbol") && find(data, "zbar_symbol_get_data") &&
              find(dataLength, "zbar_symbol_get_data_length"))
    {}

    template <typename Function>
    bool find(Function &function, const char *name)
    {
        function = reinterpret_cast<Function>(m_file.resolve(name));
        return function != nullptr;
    }

    QLibrary m_file;
    bool m_isWhole;
};

using Scanner = std::unique_ptr<zbar::zbar_image_scanner_t, void (*)(zbar::zbar_image_scanner_t *)>;
using Image = std::unique_ptr<zbar::zbar_image_t, void (*)(zbar::zbar_image_t *)>;

Scanner makeScanner(const Library &library)
{
    Scanner scanner(library.createScanner(), library.destroyScanner);
    if (!scanner) {
        return scanner;
    }
    library.configure(scanner.get(), zbar::ZBAR_NONE, zbar::ZBAR_CFG_ENABLE, 0);
    library.configure(scanner.get(), zbar::ZBAR_QRCODE, zbar::ZBAR_CFG_ENABLE, 1);
    // The bytes, not the text: that one depends on a guess of the character set.
    library.configure(scanner.get(), zbar::ZBAR_QRCODE, zbar::ZBAR_CFG_BINARY, 1);
    library.configure(scanner.get(), zbar::ZBAR_NONE, zbar::ZBAR_CFG_TEST_INVERTED, 1);
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

std::optional<QString> read(const Library &library, const LumaImage &picture)
{
    constexpr unsigned long grey = 0x30303859; // the letters Y800
    const Scanner scanner = makeScanner(library);
    const Image image(library.createImage(), library.destroyImage);
    if (!scanner || !image) {
        return std::nullopt;
    }
    library.setFormat(image.get(), grey);
    library.setSize(image.get(), static_cast<unsigned>(picture.width),
                    static_cast<unsigned>(picture.height));
    library.setData(image.get(), picture.pixels.data(), picture.pixels.size(), nullptr);
    library.scan(scanner.get(), image.get());
    const zbar::zbar_symbol_t *symbol = library.firstSymbol(image.get());
    if (symbol == nullptr) {
        return std::nullopt;
    }
    const QByteArray content(library.data(symbol),
                             static_cast<qsizetype>(library.dataLength(symbol)));
    return content.isValidUtf8() ? std::optional(QString::fromUtf8(content)) : std::nullopt;
}

} // namespace

std::optional<QString> askForSecondOpinion(const LumaView &frame, const SymbolCorners &corners,
                                           double module) noexcept
try {
    const bool isPlace = std::ranges::all_of(corners, [](const PixelPoint &corner) {
        return std::isfinite(corner.x) && std::isfinite(corner.y);
    });
    const Library *library = Library::get();
    if (!isPlace || !(module > 0) || library == nullptr) {
        return std::nullopt;
    }
    const LumaView place = placeOf(frame, corners, module);
    const int reduction = static_cast<int>(std::clamp(module / wantedModule, 1.0, 16.0));
    const int enlargement = static_cast<int>(std::clamp(wantedModule / module + 0.5, 1.0, 4.0));
    if (std::min(place.width, place.height) < 2 * reduction) {
        return std::nullopt;
    }
    return read(*library, reduction > 1     ? reduceByBox(place, reduction)
                          : enlargement > 1 ? enlarge(place, enlargement)
                                            : reduceByBox(place, 1));
} catch (const std::exception &) {
    // Out of memory.
    return std::nullopt;
}

} // namespace quillmark
