// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameDecoder.h"
#include "support/ImageFiles.h"
#include "support/simulator/Card.h"
#include "support/simulator/Film.h"
#include "support/simulator/Light.h"
#include "support/simulator/Scan.h"
#include "support/simulator/Scene.h"

#include <array>
#include <cstdint>
#include <vector>

namespace quillmark::test {

/// One card in a frame. Its pose is in pixels of the frame.
struct SimulatedCard {
    QrMatrix code;
    CardPose pose;
    double blur = 0; ///< standard deviation, in modules
    SheetOptions sheet = {};
    double shake = 0;        ///< length of the camera's movement, in modules
    double shakeTowards = 0; ///< degrees
    double halation = 0;     ///< share of the light that is spread over some ten modules
};

/// A frame of a scanned roll that can be made again from these values. Each stage changes
/// what the one before left: scene and cards, light, lens, film, scanner.
struct SimulatedFrame {
    int width = 1200;
    int height = 800;
    std::uint64_t seed = 1;
    Clutter clutter = Clutter::none;
    std::vector<SimulatedCard> cards;
    LightOptions light;
    double distortion = 0; ///< of the lens, at the frame's corners: see LensDistortion
    FilmOptions film;
    ScanOptions scan;
    int workers = 2; ///< threads to render with; the result is the same
};

/// Where the card's points lie in the finished picture.
CardGeometry geometryOf(const SimulatedFrame &frame, const SimulatedCard &card);

/// In 16-bit colour.
RasterImage renderRaster(const SimulatedFrame &frame);

/// In 8-bit grey.
LumaImage renderLuma(const SimulatedFrame &frame);

} // namespace quillmark::test
