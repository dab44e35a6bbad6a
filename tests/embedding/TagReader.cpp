// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "TagReader.h"

#include "embedding/ChildProcess.h"
#include "embedding/Exiftool.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>

#include <stdexcept>

namespace quillmark::test {

TagReader::TagReader(const std::filesystem::path &file)
{
    const ChildResult result =
        runChild(Exiftool::locate().value(), {"-config", Exiftool::configURL().value().native(),
                                              "-json", "-G0:1", "-n", "-struct", file.native()});
    if (result.status != 0) {
        throw std::runtime_error(result.errors);
    }
    m_tags =
        QJsonDocument::fromJson(QByteArray::fromStdString(result.output)).array().at(0).toObject();
}

QStringList TagReader::values(const QString &group, const QString &tag) const
{
    QStringList found;
    for (auto entry = m_tags.begin(); entry != m_tags.end(); ++entry) {
        QStringList names = entry.key().split(u':');
        if (names.takeLast() != tag || !names.contains(group)) {
            continue;
        }
        const QJsonValue value = entry.value();
        const QJsonArray items = value.isArray() ? value.toArray() : QJsonArray{value};
        for (const auto &item : items) {
            found << item.toVariant().toString();
        }
    }
    return found;
}

} // namespace quillmark::test
