// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/PictureReader.h"

#include "base/UniqueFd.h"
#include "detection/FrameDecoder.h"
#include "detection/SlateDetectionError.h"

#include <QFile>
#include <QImageReader>
#include <QTransform>

#include <fcntl.h>

#include <array>
#include <new>

namespace quillmark {
namespace {

bool fits(QSize size, int maxSide)
{
    return size.width() <= maxSide && size.height() <= maxSide;
}

QImage scaledDown(const QImage &image, int maxSide)
{
    if (fits(image.size(), maxSide)) {
        return image;
    }
    return image.scaled(maxSide, maxSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

/// Turns what is stored with an EXIF orientation (Exif 2.32, tag 0x0112) upright.
QImage upright(const QImage &image, std::uint32_t orientation)
{
    // What has to be done to the rows and columns: first mirrored, then turned clockwise.
    struct Change {
        bool mirrored;
        int degrees;
    };
    static constexpr std::array<Change, 8> changes{{{false, 0},
                                                    {true, 0},
                                                    {false, 180},
                                                    {true, 180},
                                                    {true, 270},
                                                    {false, 90},
                                                    {true, 90},
                                                    {false, 270}}};
    if (orientation < 1 || orientation > changes.size()) {
        return image;
    }
    const Change change = changes[orientation - 1];
    return image.mirrored(change.mirrored, false).transformed(QTransform().rotate(change.degrees));
}

/// With Qt's own decoders, which scale while they decode where the format allows it.
QImage readWithQt(const std::filesystem::path &file, int maxSide)
{
    UniqueFd fd(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    QFile device; // by descriptor: a name of ours may be no text
    if (!fd || !device.open(fd.get(), QIODevice::ReadOnly)) {
        return {};
    }
    QImageReader reader(&device);
    // Not for TIFF: an infrared channel would be taken for transparency.
    if (!reader.canRead() || reader.format() == "tiff") {
        return {};
    }
    reader.setAutoTransform(true);
    if (!fits(reader.size(), maxSide)) {
        reader.setScaledSize(reader.size().scaled(maxSide, maxSide, Qt::KeepAspectRatio));
    }
    return reader.read();
}

/// With the decoder for scans: it reads what Qt does not, but knows light and dark only.
QImage readScan(const std::filesystem::path &file, int maxSide)
{
    try {
        const DecodedFrame frame = decodeFrame(file);
        const QImage borrowed(frame.luma.pixels.data(), frame.luma.width, frame.luma.height,
                              frame.luma.width, QImage::Format_Grayscale8);
        return upright(scaledDown(borrowed, maxSide), frame.orientation).copy();
    } catch (const SlateDetectionError &) {
        return {};
    } catch (const std::bad_alloc &) {
        return {};
    }
}

} // namespace

QImage readPicture(const std::filesystem::path &file, int maxSide)
{
    const QImage picture = readWithQt(file, maxSide);
    return picture.isNull() ? readScan(file, maxSide) : picture;
}

} // namespace quillmark
