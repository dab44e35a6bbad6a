// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

#include <vector>

namespace quillmark {

/// A choice of file names to show, as in "JPEG" and "*.jpg".
struct NameFilter {
    QString title;
    QStringList patterns; ///< in both letter cases, since some choosers tell them apart
};

/// What a chooser is to ask for: one folder, or one file.
struct ChooserRequest {
    bool folder = true;
    QString title;
    QString acceptLabel;
    QUrl startFolder;                ///< where to begin; empty to leave it to the chooser
    std::vector<NameFilter> filters; ///< the first is chosen at the start; none for a folder
};

} // namespace quillmark
