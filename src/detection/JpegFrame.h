// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/AreaAverage.h"
#include "detection/JpegSource.h"
#include "detection/LumaRows.h"

#include <csetjmp>
#include <cstdint>
#include <vector>

namespace quillmark {

/// A JPEG file being decoded once. The operations follow one another in the order in which
/// they stand here, each after the success of the one before.
class JpegFrame
{
public:
    /// More scans than any encoder writes: past them, a picture is taken as it is.
    static constexpr int maximumScans = 64;

    /// Decodes no more than the given number of scans of a file that has several.
    explicit JpegFrame(const FrameFile &file, int scanLimit = maximumScans);
    JpegFrame(const JpegFrame &) = delete;
    JpegFrame &operator=(const JpegFrame &) = delete;
    ~JpegFrame();

    /// False where the file has no picture that can be decoded within reason.
    bool readHeader();

    int width() const { return static_cast<int>(m_info.image_width); }
    int height() const { return static_cast<int>(m_info.image_height); }
    std::uint32_t orientation() const;

    /// Decodes the rows, at full size, as far as they go. False where there was not one.
    bool readLuma(LumaRows &out);

    /// Has readColours() give the rows smaller, by 2, 4 or 8, as far as they do not fall below
    /// the given size by that: the faster, the smaller. Gives the size in which they come; 0
    /// by 0 where there is none. To be called before readColours().
    PictureSize reduceTo(PictureSize smallest);

    /// Decodes the rows in colour, at the size that reduceTo() gave. False where there was
    /// not one.
    bool readColours(AreaAverage &out);

    /// How many scans were decoded to their end; 0 for a file that has only one.
    int completedScans() const { return m_completedScans; }

private:
    struct Errors : jpeg_error_mgr {
        std::jmp_buf escape;
    };

    template <typename Step>
    bool guarded(Step step);

    bool hasPlausibleSize();
    bool hasInks() const;
    template <typename ReadRows>
    bool readPicture(ReadRows readRows);
    void readScans();
    void readGreyRows(LumaRows &out);
    template <typename Output>
    void convertRow(std::uint8_t *out) const;
    static boolean readApp1(j_decompress_ptr info);

    const FrameFile &m_file;
    const int m_scanLimit;
    int m_completedScans = 0;
    Errors m_errors{};
    JpegSource m_source;
    std::vector<unsigned char> m_exif; ///< set aside in full beforehand
    std::size_t m_exifBytes = 0;
    std::vector<JSAMPLE> m_row;       ///< as it comes from libjpeg
    std::vector<JSAMPLE> m_converted; ///< the same as RGB, where it comes otherwise
    jpeg_decompress_struct m_info{};
};

} // namespace quillmark
