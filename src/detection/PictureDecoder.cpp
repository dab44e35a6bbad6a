// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/PictureDecoder.h"

#include "detection/AreaAverage.h"
#include "detection/FrameDecoding.h"
#include "detection/TiffOrientation.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>
#include <vector>

namespace quillmark {
namespace {

/// The size to which a stored picture has to come so that, upright, it fits.
PictureSize storedSize(PictureSize picture, PictureSize largest, std::uint32_t orientation)
{
    if (swapsSides(orientation)) {
        std::swap(largest.width, largest.height);
    }
    return fittedSize(picture, largest);
}

std::optional<PictureImage> readJpeg(JpegFrame &frame, PictureSize largest)
{
    const std::uint32_t orientation = frame.orientation();
    const PictureSize size = storedSize({frame.width(), frame.height()}, largest, orientation);
    const PictureSize decoded = frame.reduceTo(size);
    if (decoded == PictureSize{}) {
        return std::nullopt;
    }
    AreaAverage average(decoded, size, 1);
    if (!frame.readColours(average)) {
        return std::nullopt;
    }
    return uprightImage(average.finish(), orientation);
}

std::optional<PictureImage> readTiff(const FrameFile &file, PictureSize largest,
                                     FrameChannels wanted)
{
    const std::unique_ptr<TiffFrame> frame = TiffFrame::open(file, wanted);
    if (!frame) {
        return std::nullopt;
    }
    const std::uint32_t orientation = tiffOrientation(file);
    const PictureSize whole{frame->width(), frame->height()};
    SampleRgb colours(frame->layout());
    findLevels(*frame, colours);
    AreaAverage average(whole, storedSize(whole, largest, orientation), frame->rowsTogether());
    std::vector<std::uint8_t> row;
    bool decoded = false;
    frame->visitAll([&](const SampleRow &samples) {
        row.resize(static_cast<std::size_t>(samples.count) * RgbOutput::channels);
        colours.convert(samples.samples, samples.count, row.data());
        average.add(samples.x, samples.y, samples.count, row.data());
        decoded = true;
    });
    if (!decoded) {
        return std::nullopt;
    }
    return uprightImage(average.finish(), orientation);
}

} // namespace

PictureImage decodePicture(const std::filesystem::path &file, PictureSize largest,
                           const std::stop_token &stop)
{
    return decodeByFormat(
        file, stop,
        [&](const FrameFile &jpeg) {
            return decodeScans(jpeg, [&](JpegFrame &frame) { return readJpeg(frame, largest); });
        },
        [&](const FrameFile &tiff) {
            std::optional<PictureImage> picture = readTiff(tiff, largest, FrameChannels::colours);
            // Where chroma is stored apart and lost, lightness is better than nothing.
            return picture ? std::move(picture) : readTiff(tiff, largest, FrameChannels::luma);
        });
}

} // namespace quillmark
