// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/StoredFrame.h"

#include "support/TempDir.h"

#include <stdexcept>

namespace quillmark::test {

void writeStored(const std::filesystem::path &path, const SimulatedFrame &frame,
                 const FrameFile &file)
{
    if (file.format == FrameFormat::jpeg) {
        writeJpeg(path, renderRaster(frame), {.quality = file.quality});
    } else if (file.format == FrameFormat::tiff) {
        TiffOptions options;
        options.bits = file.bits;
        options.extraChannels = file.infrared ? 1 : 0;
        writeTiff(path, renderRaster(frame), options);
    } else {
        throw std::invalid_argument("a frame without a file has no format");
    }
}

LumaImage storedLuma(const SimulatedFrame &frame, const FrameFile &file)
{
    if (file.format == FrameFormat::none) {
        return renderLuma(frame);
    }
    const TempDir folder;
    const std::filesystem::path path = folder / "frame";
    writeStored(path, frame, file);
    return decodeFrame(path).luma;
}

} // namespace quillmark::test
