// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/Frames.h"

#include "support/simulator/SlateFrame.h"

#include <algorithm>
#include <string>

namespace quillmark::test {

RasterImage renderFrame(const std::vector<QByteArray> &codes)
{
    constexpr int height = 700;
    SimulatedFrame frame;
    frame.height = height;
    frame.width = height * std::max(1, static_cast<int>(codes.size()));
    frame.seed = 7;
    for (std::size_t i = 0; i < codes.size(); ++i) {
        SimulatedCard card;
        card.code = encodeQr(codes[i]);
        card.pose.centreX = height * (static_cast<double>(i) + 0.5);
        card.pose.centreY = height / 2.0;
        card.pose.modulePixels = 0.6 * height / card.code.size;
        frame.cards.push_back(card);
    }
    return renderRaster(frame);
}

std::filesystem::path writeFrame(const std::filesystem::path &file,
                                 const std::vector<QByteArray> &codes)
{
    const RasterImage image = renderFrame(codes);
    const std::string extension = file.extension().string();
    if (extension.find_first_of("tT") == 1) {
        writeTiff(file, image);
    } else {
        writeJpeg(file, image);
    }
    return file;
}

} // namespace quillmark::test
