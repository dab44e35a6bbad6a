// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameDecoder.h"
#include "support/simulator/CardGeometry.h"
#include "support/simulator/QrMatrix.h"

#include <QByteArray>

namespace quillmark::test {

/// Whether a card's code can be read from a picture by somebody who knows where each of its
/// modules lies, its version, and whether it is negative: what no reader has to find then is
/// left out, and what remains is what light, film and file have left of the modules.
///
/// Modules are averaged over two widths, sharpened against their neighbours by several
/// strengths, cut by one threshold for all and by local ones, and handed to the same decoder that
/// the program uses; the patterns that are the same in all codes of the version are drawn as
/// they should be. Any thread; throws nothing but for want of memory.
struct OracleAnswer {
    bool reads = false;
    bool readsEqualized =
        false; ///< the same, or after modules that ran into each other were equalized
};
OracleAnswer askOracle(const LumaImage &picture, const QrMatrix &code, const CardGeometry &geometry,
                       bool lightOnDark, const QByteArray &content);

} // namespace quillmark::test
