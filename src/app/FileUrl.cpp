// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/FileUrl.h"

#include <QByteArray>
#include <QString>

namespace quillmark {

std::optional<std::filesystem::path> pathFromFileUrl(const QUrl &url)
{
    const QString host = url.host();
    const bool ours = host.isEmpty() || host == QLatin1String("localhost");
    if (url.scheme() != QLatin1String("file") || !ours) {
        return std::nullopt;
    }
    // QUrl::toLocalFile() would replace what is not UTF-8.
    const QByteArray bytes =
        QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
    if (!bytes.startsWith('/') || bytes.contains('\0')) {
        return std::nullopt;
    }
    return std::filesystem::path(bytes.toStdString());
}

QUrl fileUrlFromPath(const std::filesystem::path &path)
{
    const QByteArray encoded =
        QByteArray::fromStdString(path.native()).toPercentEncoding(QByteArrayLiteral("/"));
    return QUrl::fromEncoded(QByteArrayLiteral("file://") + encoded, QUrl::StrictMode);
}

} // namespace quillmark
