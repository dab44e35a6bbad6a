// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace quillmark::bench {

/// The least that looking at a JPEG takes: libjpeg-turbo's plainest way from a file in memory to
/// grey rows in one buffer.
class LumaFloor
{
public:
    /// Throws std::runtime_error where the file cannot be read.
    explicit LumaFloor(const std::filesystem::path &jpeg);

    void decode();

private:
    std::string m_file;
    std::vector<unsigned char> m_pixels;
};

} // namespace quillmark::bench
