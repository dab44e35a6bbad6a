// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/simulator/QrMatrix.h"

#include <QByteArray>
#include <QStringList>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>

namespace quillmark::tools {

/// What a person asked for that cannot be done; what() is the sentence to print.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

enum class RollFormat { jpeg, tiff8, tiff16, mixed };

/// A roll to make.
struct RollOptions {
    std::filesystem::path folder;
    int frames = 6;
    int slateAt = 1; ///< counted from 1; 0 is a roll without a slate
    int width = 3000;
    int height = 2000;
    RollFormat format = RollFormat::jpeg;
    QByteArray payload; ///< JSON in UTF-8
    test::QrLevel level = test::QrLevel::M;
    std::optional<double>
        modulePixels; ///< the code fills 45 % of the frame's short side where not given
    std::optional<double> centreX; ///< of the code, as a share of the width
    std::optional<double> centreY;
    double tilt = 0;        ///< degrees
    double perspective = 0; ///< degrees
    double blur = 0.1;      ///< modules
    double contrast = 0.9;  ///< 0 to 1
    double grain = 0.02;    ///< 0 to 1
    int dust = 10;
    int scratches = 1;
    bool negative = false;
    bool mirrored = false;
    int quality = 90; ///< of JPEG files
    std::uint64_t seed = 1;
    int jobs = 2;
};

/// Reads the command line; leaves the program after --help and --version.
/// Throws UsageError.
RollOptions parseRollOptions(const QStringList &arguments);

} // namespace quillmark::tools
