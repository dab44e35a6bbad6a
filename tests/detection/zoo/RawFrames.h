// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/zoo/Zoo.h"
#include "support/RawTiff.h"

#include <functional>
#include <string>
#include <string_view>

namespace quillmark::test {

// TIFF files put together entry by entry.

void writeBytes(const std::filesystem::path &file, std::string_view bytes);

/// The picture in 8 bits a sample, rows one behind the other.
std::string packedBytes(const RasterImage &image);

/// A directory as most programs write it, of an uncompressed picture of 8 bits in one strip.
RawTiffEntries plainEntries(const RasterImage &image, std::uint64_t strip);

/// Changes a plain directory; the file is there for what is to stand beside it.
using EntryChange = std::function<RawTiffEntries(RawTiffEntries, RawTiff &)>;

/// The coloured slate in a plain file but for that.
ZooRow rawRow(std::string name, const std::string &how, const EntryChange &change);

/// The grey one.
ZooRow greyRawRow(std::string name, const std::string &how, const EntryChange &change);

ZooRow refused(ZooRow row);

} // namespace quillmark::test
