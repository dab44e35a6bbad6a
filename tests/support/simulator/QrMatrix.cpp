// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/QrMatrix.h"

#include <qrencode.h>

#include <memory>
#include <stdexcept>

namespace quillmark::test {
namespace {

struct FreeCode {
    void operator()(QRcode *code) const { QRcode_free(code); }
};
struct FreeInput {
    void operator()(QRinput *input) const { QRinput_free(input); }
};

QRecLevel libraryLevel(QrLevel level)
{
    switch (level) {
    case QrLevel::L:
        return QR_ECLEVEL_L;
    case QrLevel::M:
        return QR_ECLEVEL_M;
    case QrLevel::Q:
        return QR_ECLEVEL_Q;
    case QrLevel::H:
        return QR_ECLEVEL_H;
    }
    return QR_ECLEVEL_M;
}

QRencodeMode libraryMode(QrMode mode)
{
    switch (mode) {
    case QrMode::numeric:
        return QR_MODE_NUM;
    case QrMode::alphanumeric:
        return QR_MODE_AN;
    case QrMode::bytes:
        return QR_MODE_8;
    case QrMode::kanji:
        return QR_MODE_KANJI;
    }
    return QR_MODE_8;
}

QrMatrix encode(const std::vector<QrSegment> &segments, QrLevel level, int fromVersion)
{
    const std::unique_ptr<QRinput, FreeInput> input(QRinput_new2(fromVersion, libraryLevel(level)));
    if (!input) {
        throw std::runtime_error("no such QR version");
    }
    for (const QrSegment &segment : segments) {
        if (segment.eci >= 0) {
            QRinput_appendECIheader(input.get(), static_cast<unsigned>(segment.eci));
        }
        if (QRinput_append(input.get(), libraryMode(segment.mode),
                           static_cast<int>(segment.content.size()),
                           reinterpret_cast<const unsigned char *>(segment.content.data())) != 0) {
            throw std::runtime_error("the segment does not suit its mode");
        }
    }
    const std::unique_ptr<QRcode, FreeCode> code(QRcode_encodeInput(input.get()));
    if (!code) {
        throw std::runtime_error("the content does not fit into a QR code");
    }

    QrMatrix matrix;
    matrix.size = code->width;
    const auto count =
        static_cast<std::size_t>(code->width) * static_cast<std::size_t>(code->width);
    matrix.cells.reserve(count);
    matrix.fixed.reserve(count);
    // The library's marks of a module: timing, alignment, finder or separator.
    constexpr unsigned fixedMarks = 0x10U | 0x20U | 0x40U;
    for (std::size_t i = 0; i < count; ++i) {
        matrix.cells.push_back(code->data[i] & 1U);
        matrix.fixed.push_back((code->data[i] & fixedMarks) != 0 ? 1 : 0);
    }
    return matrix;
}

} // namespace

QrMatrix encodeQr(const QByteArray &bytes, QrLevel level, int fromVersion)
{
    return encode({{QrMode::bytes, bytes}}, level, fromVersion);
}

QrMatrix encodeQrSegments(const std::vector<QrSegment> &segments, QrLevel level)
{
    return encode(segments, level, 1);
}

} // namespace quillmark::test
