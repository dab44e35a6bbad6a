// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/PictureReader.h"

#include "base/UniqueFd.h"
#include "detection/PictureDecoder.h"
#include "detection/SlateDetectionError.h"

#include <QFile>
#include <QImageReader>

#include <fcntl.h>

#include <new>

namespace quillmark {
namespace {

/// With the decoder for scans, which reads JPEG and TIFF.
QImage readScan(const std::filesystem::path &file, QSize largest, const std::stop_token &stop)
{
    try {
        const PictureImage picture = decodePicture(file, {largest.width(), largest.height()}, stop);
        const QImage borrowed(picture.pixels.data(), picture.width, picture.height,
                              3 * qsizetype{picture.width}, QImage::Format_RGB888);
        // As it is painted fastest.
        return borrowed.convertToFormat(QImage::Format_RGB32);
    } catch (const SlateDetectionError &) {
        return {};
    } catch (const std::bad_alloc &) {
        return {};
    }
}

/// With Qt's decoders: any other kind of picture.
QImage readWithQt(const std::filesystem::path &file, QSize largest)
{
    // Pipes and devices are not even opened; should the name become one here, it does not block.
    std::error_code failure;
    if (!std::filesystem::is_regular_file(file, failure)) {
        return {};
    }
    UniqueFd fd(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    QFile device; // by descriptor: a name of ours may be no text
    if (!fd || !device.open(fd.get(), QIODevice::ReadOnly)) {
        return {};
    }
    QImageReader reader(&device);
    // What our decoder refuses is not tried once more; of a TIFF, Qt would take an infrared
    // channel for transparency.
    if (!reader.canRead() || reader.format() == "tiff" || reader.format() == "jpeg") {
        return {};
    }
    reader.setAutoTransform(true);
    const QSize stored = reader.size();
    const bool turned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    const QSize box = turned ? largest.transposed() : largest;
    if (stored.width() > box.width() || stored.height() > box.height()) {
        reader.setScaledSize(stored.scaled(box, Qt::KeepAspectRatio).expandedTo({1, 1}));
    }
    QImage picture = reader.read();
    // Not every format tells its size beforehand.
    if (picture.width() > largest.width() || picture.height() > largest.height()) {
        picture = picture.scaled(largest, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    return picture.convertToFormat(picture.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                             : QImage::Format_RGB32);
}

} // namespace

QImage readPicture(const std::filesystem::path &file, QSize largest, const std::stop_token &stop)
{
    const QImage picture = readScan(file, largest, stop);
    return picture.isNull() && !stop.stop_requested() ? readWithQt(file, largest) : picture;
}

} // namespace quillmark
