// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "base/PathText.h"

namespace quillmark {

QString pathText(const std::filesystem::path &path)
{
    return QString::fromStdString(path.native());
}

QString fileNameText(const std::filesystem::path &path)
{
    if (path.has_filename()) {
        return pathText(path.filename());
    }
    const std::filesystem::path parent = path.parent_path();
    return pathText(parent.has_filename() ? parent.filename() : path);
}

} // namespace quillmark
