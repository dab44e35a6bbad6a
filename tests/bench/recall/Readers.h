// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameDecoder.h"

#include <QByteArray>

#include <functional>
#include <vector>

namespace quillmark::bench {

/// One of the QR readers that are set side by side.
struct Reader {
    const char *name; ///< as in the table, without spaces
    /// The contents of all codes that it reads in a picture, as bytes. Not callable where
    /// the reader was not there when the benchmark was built.
    std::function<std::vector<QByteArray>(const LumaImage &)> read;
};

/// Ours first, then the others, always in the same order and all of them.
std::vector<Reader> allReaders();

// The others, each behind its own library's header.
Reader zbarReader(bool withInversion);
Reader zxingReader(bool withEffort);
Reader openCvReader();

} // namespace quillmark::bench
