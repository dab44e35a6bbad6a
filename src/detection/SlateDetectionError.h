// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/Described.h"

#include <QByteArray>
#include <QString>

#include <exception>
#include <filesystem>

namespace quillmark {

/// Why no slate came out of an image or a folder.
class SlateDetectionError : public std::exception, public Described
{
public:
    enum class Case {
        imageDecodeFailed, ///< one image cannot be read as a picture
        noSlateFound,      ///< every image was tried and none holds a slate
        noImagesFound,     ///< the folder lists no images at all
    };

    static SlateDetectionError imageDecodeFailed(const std::filesystem::path &image);
    static SlateDetectionError noSlateFound(qint64 triedCount);
    static SlateDetectionError noImagesFound();

    Case which() const { return m_case; }
    QString description() const override { return m_description; }
    const char *what() const noexcept override { return m_what.constData(); }

    /// How many images were tried; 0 unless which() is noSlateFound.
    qint64 triedCount() const { return m_triedCount; }

private:
    SlateDetectionError(Case which, const QString &description, qint64 triedCount = 0);

    Case m_case;
    QString m_description;
    QByteArray m_what;
    qint64 m_triedCount;
};

} // namespace quillmark
