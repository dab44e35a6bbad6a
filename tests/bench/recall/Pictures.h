// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameDecoder.h"

#include "support/simulator/Oracle.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <functional>
#include <string_view>

namespace quillmark::bench {

/// A picture that readers are tried on.
struct Picture {
    LumaImage luma;
    QByteArray content; ///< of the code in it; empty where there is none
    QString difficulty; ///< the row of the table that it counts for
    QString about = {}; ///< what a developer wants to know of it, in a few words
    /// Whether the code can be read by somebody who knows where it is; not callable where
    /// nobody does.
    std::function<test::OracleAnswer(const LumaImage &)> oracle = {};
};

/// The picture of a seed and an index: the same each time.
using PictureSet = std::function<Picture(std::uint64_t seed, int index)>;

/// The set of a name:
/// slates  frames of rolls with a slate;
/// photos  small photographs and screenshots of codes of any content;
/// empty   pictures of moderate size without a code;
/// large   frames of 24 megapixels without a code.
/// Throws std::invalid_argument for another name.
PictureSet pictureSet(std::string_view name);

} // namespace quillmark::bench
