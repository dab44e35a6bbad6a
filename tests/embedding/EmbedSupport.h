// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "embedding/Exiftool.h"
#include "support/ImageFiles.h"
#include "support/TempDir.h"

#include <QString>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace quillmark::test {

/// The generator version that these tests write.
QString generatorVersion();

/// A small colour picture with no two neighbouring pixels alike.
RasterImage picture(int width = 48, int height = 32);

/// Embeds with the installed exiftool and the event loop running; throws what it throws.
void embed(const std::vector<std::filesystem::path> &files, const SlatePayload &payload);

/// The XMP packet of a JPEG file, which stands in it as plain text; empty without one.
std::string xmpText(const std::filesystem::path &file);

/// Whether a JPEG file holds the private namespace.
bool isTagged(const std::filesystem::path &file);

/// A folder for JPEG files.
class ExiftoolOnJpeg : public ::testing::Test
{
protected:
    std::filesystem::path jpeg(const std::filesystem::path &name) const;

    TempDir m_folder;
};

} // namespace quillmark::test
