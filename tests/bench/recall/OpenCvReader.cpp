// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "bench/recall/Readers.h"

#ifdef QUILLMARK_HAVE_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/objdetect.hpp>

#include <string>
#endif

namespace quillmark::bench {

#ifdef QUILLMARK_HAVE_OPENCV
namespace {

std::vector<QByteArray> readWithOpenCv(const LumaImage &picture)
{
    // The library reads the pixels only, but takes no pointer to constant ones.
    const cv::Mat view(picture.height, picture.width, CV_8UC1,
                       const_cast<std::uint8_t *>(picture.pixels.data()));
    std::vector<std::string> texts;
    try {
        cv::QRCodeDetector().detectAndDecodeMulti(view, texts);
    } catch (const cv::Exception &) {
        return {}; // it gives up on some pictures this way
    }
    std::vector<QByteArray> contents;
    for (const std::string &text : texts) {
        if (!text.empty()) {
            contents.push_back(QByteArray::fromStdString(text));
        }
    }
    return contents;
}

} // namespace
#endif

Reader openCvReader()
{
    Reader reader{"opencv", {}};
#ifdef QUILLMARK_HAVE_OPENCV
    reader.read = readWithOpenCv;
#endif
    return reader;
}

} // namespace quillmark::bench
