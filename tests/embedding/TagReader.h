// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <filesystem>

namespace quillmark::test {

/// The metadata of a file as exiftool reads it with our configuration: raw numbers, lists
/// as lists.
class TagReader
{
public:
    /// Throws std::runtime_error where exiftool cannot read the file.
    explicit TagReader(const std::filesystem::path &file);

    /// All values of a tag: the items of a list one by one, none where the tag is missing.
    /// The group is one of family 0 or 1 ("EXIF", "IFD0", "XMP-dc").
    QStringList values(const QString &group, const QString &tag) const;

private:
    QJsonObject m_tags;
};

} // namespace quillmark::test
