// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <filesystem>

namespace quillmark {

/// Paths are bytes, as the file system has them, and become text only to be shown:
/// as UTF-8, with U+FFFD for every byte that is not. Such a text never becomes a path again.
QString pathText(const std::filesystem::path &path);

/// The last component's name as text, for showing. A trailing separator does not hide the
/// name: "/rolls/12/" gives "12". The root directory gives "/".
QString fileNameText(const std::filesystem::path &path);

} // namespace quillmark
