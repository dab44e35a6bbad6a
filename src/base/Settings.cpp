// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "base/Settings.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>

namespace quillmark::Settings {
namespace {

QDir folder()
{
    return {QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
            QStringLiteral("/Larkhollow/Quillmark")};
}

} // namespace

std::optional<QByteArray> value(const QString &key)
{
    QFile file(folder().filePath(key));
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QByteArray bytes = file.readAll();
    return file.error() == QFileDevice::NoError ? std::optional(bytes) : std::nullopt;
}

void store(const QString &key, const QByteArray &value)
{
    const QDir place = folder();
    place.mkpath(QStringLiteral("."));
    // It writes beside the file, and takes its place with commit() alone, once the bytes are on
    // disk. Through a buffer it would not notice that only some of them could be written.
    QSaveFile file(place.filePath(key));
    if (file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
        file.write(value) == value.size()) {
        file.commit();
    }
}

} // namespace quillmark::Settings
