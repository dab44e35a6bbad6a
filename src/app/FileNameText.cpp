// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/FileNameText.h"

#include "app/FileUrl.h"
#include "base/PathText.h"

namespace quillmark {

QString FileNameText::text() const
{
    const auto path = pathFromFileUrl(m_file);
    return path ? fileNameText(*path) : QString();
}

} // namespace quillmark
