// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/JpegFrame.h"

#include "detection/ExifOrientation.h"
#include "detection/FrameLimits.h"
#include "detection/SampleConverter.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quillmark {
namespace {

constexpr std::size_t app1Bytes = 65533;

/// A block of 64 samples costs at least one bit in the scan of its mean values; twice as many
/// pixels leave room for a file that was cut short.
constexpr std::uint64_t pixelsPerByte = 1024;

/// What the coefficients of a file of several scans may take, which are all kept until the
/// last scan: some on trust, and the rest in keeping with the size of the file, which for a
/// picture without any detail may be 300 times smaller.
constexpr std::uint64_t coefficientBytesOnTrust = 40U << 20U;
constexpr std::uint64_t coefficientBytesPerByte = 512;

/// How much of a file is read, segments that can be passed over aside: before the size of the
/// picture is known, and then for its pixels, of which none takes as much in any process.
constexpr std::uint64_t headBytes = 128U << 20U;
constexpr std::uint64_t bytesPerPixel = 32;

/// The rows handed to libjpeg at once: it fills as many as it has ready.
constexpr int rowsAtOnce = 16;

} // namespace

JpegFrame::JpegFrame(const FrameFile &file, int scanLimit)
    : m_file(file), m_scanLimit(scanLimit), m_source(file), m_exif(app1Bytes)
{
    m_info.err = jpeg_std_error(&m_errors);
    m_errors.error_exit = [](j_common_ptr info) {
        std::longjmp(static_cast<Errors *>(info->err)->escape, 1);
    };
    m_errors.output_message = [](j_common_ptr) {};
    m_errors.emit_message = [](j_common_ptr, int) {};
}

JpegFrame::~JpegFrame()
{
    jpeg_destroy_decompress(&m_info);
}

/// libjpeg reports a fatal error by never returning. The one place it jumps back to is here;
/// nothing that has a destructor lives between this function and libjpeg.
template <typename Step>
bool JpegFrame::guarded(Step step)
{
    if (setjmp(m_errors.escape) != 0) {
        return false;
    }
    step();
    return true;
}

bool JpegFrame::readHeader()
{
    m_source.allow(headBytes);
    const bool read = guarded([this] {
        jpeg_create_decompress(&m_info);
        m_info.client_data = this;
        m_info.src = &m_source;
        jpeg_set_marker_processor(&m_info, JPEG_APP0 + 1, readApp1);
        jpeg_read_header(&m_info, TRUE);
        // EXIF stands before the picture (Exif 2.32, section 4.5.4), not between its scans.
        jpeg_save_markers(&m_info, JPEG_APP0 + 1, 0);
    });
    if (!read || !hasPlausibleSize()) {
        return false;
    }
    m_source.allow(std::uint64_t{m_info.image_width} * m_info.image_height * bytesPerPixel);
    return m_source.pictureDataFollow();
}

/// Keeps the first EXIF block and skips everything else that APP1 segments carry. (Were
/// libjpeg to save them, a file of nothing but such segments would be held in memory.)
boolean JpegFrame::readApp1(j_decompress_ptr info)
{
    auto &frame = *static_cast<JpegFrame *>(info->client_data);
    JpegSource &source = frame.m_source;
    const int high = source.nextByte();
    auto left = static_cast<std::size_t>(std::max((high << 8 | source.nextByte()) - 2, 0));

    using namespace std::string_view_literals;
    constexpr std::string_view mark = "Exif\0\0"sv;
    if (frame.m_exifBytes == 0 && left >= mark.size()) {
        bool found = true;
        for (std::size_t i = 0; i < mark.size(); ++i, --left) {
            frame.m_exif[i] = static_cast<unsigned char>(source.nextByte());
            found = found && frame.m_exif[i] == static_cast<unsigned char>(mark[i]);
        }
        if (found) {
            frame.m_exifBytes = mark.size();
            for (; left > 0; --left) {
                frame.m_exif[frame.m_exifBytes++] = static_cast<unsigned char>(source.nextByte());
            }
        }
    }
    source.skip(static_cast<long>(left));
    return TRUE;
}

bool JpegFrame::hasPlausibleSize()
{
    const std::uint64_t pixels = std::uint64_t{m_info.image_width} * m_info.image_height;
    if (!isPlausibleSize(pixels, m_file.size(), pixelsPerByte)) {
        return false;
    }
    if (!jpeg_has_multiple_scans(&m_info)) {
        return true;
    }
    std::uint64_t coefficients = 0;
    for (int i = 0; i < m_info.num_components; ++i) {
        const jpeg_component_info &component = m_info.comp_info[i];
        coefficients +=
            std::uint64_t{component.width_in_blocks} * component.height_in_blocks * DCTSIZE2;
    }
    return coefficients * sizeof(JCOEF) <=
           coefficientBytesOnTrust + m_file.size() * coefficientBytesPerByte;
}

std::uint32_t JpegFrame::orientation() const
{
    return m_exifBytes == 0 ? 1 : exifOrientation({m_exif.data(), m_exifBytes});
}

bool JpegFrame::hasInks() const
{
    return m_info.jpeg_color_space == JCS_CMYK || m_info.jpeg_color_space == JCS_YCCK;
}

/// Luma is a component of its own wherever it can be, so that the others are not decoded
/// beyond their entropy code.
bool JpegFrame::readLuma(LumaRows &out)
{
    switch (m_info.jpeg_color_space) {
    case JCS_GRAYSCALE:
    case JCS_YCbCr:
    case JCS_RGB:
        m_info.out_color_space = JCS_GRAYSCALE;
        return readPicture([this, &out] { readGreyRows(out); });
    default:
        m_info.out_color_space = hasInks() ? JCS_CMYK : JCS_UNKNOWN;
        break;
    }
    return readPicture([this, &out] {
        while (m_info.output_scanline < m_info.output_height) {
            const int y = static_cast<int>(m_info.output_scanline);
            JSAMPROW row = m_row.data();
            jpeg_read_scanlines(&m_info, &row, 1);
            convertRow<LumaOutput>(out.rows(y, 1));
            out.advance(y + 1);
        }
    });
}

PictureSize JpegFrame::reduceTo(PictureSize smallest)
{
    const auto covers = [&](unsigned reduction) {
        const auto reduced = [reduction](unsigned side) {
            return static_cast<int>((side + reduction - 1) / reduction);
        };
        return reduced(m_info.image_width) >= smallest.width &&
               reduced(m_info.image_height) >= smallest.height;
    };
    m_info.scale_num = 1;
    m_info.scale_denom = covers(8) ? 8 : covers(4) ? 4 : covers(2) ? 2 : 1;
    const bool known = guarded([this] { jpeg_calc_output_dimensions(&m_info); });
    return known ? PictureSize{static_cast<int>(m_info.output_width),
                               static_cast<int>(m_info.output_height)}
                 : PictureSize{};
}

bool JpegFrame::readColours(AreaAverage &out)
{
    switch (m_info.jpeg_color_space) {
    case JCS_YCbCr:
    case JCS_RGB:
        m_info.out_color_space = JCS_RGB;
        break;
    case JCS_GRAYSCALE:
        m_info.out_color_space = JCS_GRAYSCALE;
        break;
    default:
        m_info.out_color_space = hasInks() ? JCS_CMYK : JCS_UNKNOWN;
        break;
    }
    const bool converted = m_info.out_color_space != JCS_RGB;
    m_converted.resize(converted ? std::size_t{m_info.output_width} * RgbOutput::channels : 0);
    return readPicture([this, &out, converted] {
        while (m_info.output_scanline < m_info.output_height) {
            const int y = static_cast<int>(m_info.output_scanline);
            JSAMPROW row = m_row.data();
            jpeg_read_scanlines(&m_info, &row, 1);
            if (converted) {
                convertRow<RgbOutput>(m_converted.data());
                row = m_converted.data();
            }
            out.add(0, y, static_cast<int>(m_info.output_width), row);
        }
    });
}

/// Calls `readRows` with the decompressor ready to hand out rows; room for one is in m_row.
template <typename ReadRows>
bool JpegFrame::readPicture(ReadRows readRows)
{
    const auto channels = static_cast<std::size_t>(std::max(m_info.num_components, 4));
    m_row.resize(std::size_t{m_info.image_width} * channels);
    guarded([this, &readRows] {
        m_info.buffered_image = jpeg_has_multiple_scans(&m_info);
        jpeg_start_decompress(&m_info);
        if (m_info.buffered_image) {
            readScans();
        }
        readRows();
    });
    return m_info.output_scanline > 0;
}

void JpegFrame::readScans()
{
    int status = JPEG_SUSPENDED;
    do {
        status = jpeg_consume_input(&m_info);
        m_completedScans += status == JPEG_SCAN_COMPLETED ? 1 : 0;
    } while (status != JPEG_REACHED_EOI && m_completedScans < m_scanLimit);
    jpeg_start_output(&m_info, m_info.input_scan_number);
}

/// Straight to where they belong, as many as libjpeg has ready.
void JpegFrame::readGreyRows(LumaRows &out)
{
    while (m_info.output_scanline < m_info.output_height) {
        const int y = static_cast<int>(m_info.output_scanline);
        const int count = std::min(rowsAtOnce, height() - y);
        std::array<JSAMPROW, rowsAtOnce> rows{};
        rows[0] = out.rows(y, count);
        for (std::size_t i = 1; i < static_cast<std::size_t>(count); ++i) {
            rows[i] = rows[i - 1] + width();
        }
        jpeg_read_scanlines(&m_info, rows.data(), static_cast<JDIMENSION>(count));
        out.advance(static_cast<int>(m_info.output_scanline));
    }
}

/// From m_row, which holds no RGB.
template <typename Output>
void JpegFrame::convertRow(std::uint8_t *out) const
{
    const int count = static_cast<int>(m_info.output_width);
    if (m_info.out_color_space != JCS_CMYK) {
        convertFirst<Output>(m_row.data(), m_info.output_components, count, out);
    } else if (m_info.saw_Adobe_marker) {
        convertInvertedInks<Output>(m_row.data(), 4, count, out);
    } else {
        convertInks<Output>(m_row.data(), 4, count, out);
    }
}

} // namespace quillmark
