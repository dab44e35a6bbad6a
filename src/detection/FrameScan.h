// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <filesystem>
#include <optional>
#include <vector>

namespace quillmark {

/// What readQrCodes() finds on the frame that decodeFrame() gives, in less time: the search
/// follows the decoder on a thread of its own, and nothing is left of the frame afterwards.
/// Throws what decodeFrame() does. Blocks; any thread but the main one.
std::vector<std::optional<QString>> scanFrame(const std::filesystem::path &file);

} // namespace quillmark
