// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "ingest/CopyNames.h"

#include "base/PathText.h"
#include "ingest/FileError.h"

#include <cerrno>
#include <utility>

namespace quillmark {

CopyNames::CopyNames(std::filesystem::path source, std::filesystem::path destination)
    : m_source(std::move(source)), m_destination(std::move(destination))
{}

void CopyNames::fail(std::error_code reason) const
{
    throw FileError(QStringLiteral("Could not copy “%1” to “%2”")
                        .arg(pathText(m_source), pathText(m_destination)),
                    m_source, reason);
}

void CopyNames::fail() const
{
    fail({errno, std::generic_category()});
}

} // namespace quillmark
