// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QUrl>

#include <filesystem>
#include <optional>

namespace quillmark {

/// The location that a "file" URL of this machine names, byte for byte: percent-encoded
/// bytes need not be UTF-8. Nothing for any other URL, and for one without a usable path.
std::optional<std::filesystem::path> pathFromFileUrl(const QUrl &url);

/// The "file" URL of an absolute location, every byte kept.
QUrl fileUrlFromPath(const std::filesystem::path &path);

} // namespace quillmark
