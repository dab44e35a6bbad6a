// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace quillmark {

/// One labelled line of what a payload says, for showing.
struct InspectorRow {
    QString label;
    QString value;

    bool operator==(const InspectorRow &) const = default;
};

/// What a slate says about a roll of film. A plain value: fields are kept exactly as they
/// were read, and an absent optional is something else than an empty text.
struct SlatePayload {
    qint64 version = 0; ///< payload format; the program accepts 2
    QString sessionId;  ///< the generator's identifier of this slate
    QString cameraMake;
    QString cameraModel;
    QString filmBrand;
    QString filmStock;
    qint64 iso = 0; ///< film speed
    std::optional<QString> lensMake;
    std::optional<QString> lensModel;
    std::optional<qint64> focalLength; ///< millimetres
    std::optional<qint64> pushPull;    ///< stops; pushed is positive, pulled negative
    std::optional<QString> location;
    std::optional<QString> project;
    std::optional<QString> notes;
    std::optional<QString> date; ///< as the generator wrote it; not parsed
    std::optional<QString> rollName;
    std::optional<QString> artist;
    std::optional<QString> copyright;
    std::optional<QString> appVersion; ///< of the generator

    bool operator==(const SlatePayload &) const = default;

    /// Maker and model joined into one name; the maker is not repeated where the model
    /// already begins with it and a space (compared in lower case).
    QString fullCameraName() const;

    /// Brand and stock, joined by the same rule.
    QString fullFilmName() const;

    /// The payload as labelled lines, in the order in which they are shown.
    std::vector<InspectorRow> inspectorRows() const;
};

} // namespace quillmark
