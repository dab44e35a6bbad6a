// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "bench/recall/Readers.h"

#include "detection/QrReader.h"

namespace quillmark::bench {
namespace {

std::vector<QByteArray> readOurselves(const LumaImage &picture)
{
    std::vector<QByteArray> contents;
    for (const std::optional<QString> &text : readQrCodes(picture, 1)) {
        if (text) {
            contents.push_back(text->toUtf8());
        }
    }
    return contents;
}

} // namespace

std::vector<Reader> allReaders()
{
    return {
        {"quillmark", readOurselves}, zbarReader(false), zbarReader(true),
        zxingReader(false),           zxingReader(true), openCvReader(),
    };
}

} // namespace quillmark::bench
