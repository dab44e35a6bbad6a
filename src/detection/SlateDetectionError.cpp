// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SlateDetectionError.h"

#include "base/PathText.h"

namespace quillmark {

SlateDetectionError::SlateDetectionError(Case which, const QString &description, qint64 triedCount)
    : m_case(which),
      m_description(description),
      m_what(description.toUtf8()),
      m_triedCount(triedCount)
{}

SlateDetectionError SlateDetectionError::imageDecodeFailed(const std::filesystem::path &image)
{
    return {Case::imageDecodeFailed,
            QStringLiteral("Could not decode image: ") + fileNameText(image)};
}

SlateDetectionError SlateDetectionError::noSlateFound(qint64 triedCount)
{
    return {Case::noSlateFound,
            QStringLiteral("No Quillmark QR detected in any of the ") +
                QString::number(triedCount) +
                QStringLiteral(" images. Try selecting the slate manually."),
            triedCount};
}

SlateDetectionError SlateDetectionError::noImagesFound()
{
    return {Case::noImagesFound, QStringLiteral("Folder contains no JPG or TIFF images.")};
}

} // namespace quillmark
