// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "Commands.h"

#include "embedding/Pixels.h"

#include <QCryptographicHash>

#include <cctype>
#include <cstdio>
#include <exception>
#include <string>

namespace quillmark::kills {
namespace {

bool isTiff(const std::filesystem::path &file)
{
    const std::string extension = file.extension().native();
    return extension.size() > 1 && std::tolower(static_cast<unsigned char>(extension[1])) == 't';
}

} // namespace

void printPixelHash(const std::filesystem::path &file)
{
    try {
        const std::string pixels = isTiff(file) ? test::tiffPixels(file) : test::jpegPixels(file);
        const QByteArray hash =
            QCryptographicHash::hash(QByteArray::fromStdString(pixels), QCryptographicHash::Sha256);
        std::printf("%s\n", hash.toHex().constData());
    } catch (const std::exception &failure) {
        std::printf("unreadable: %s\n", failure.what());
    }
}

} // namespace quillmark::kills
