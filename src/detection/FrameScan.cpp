// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FrameScan.h"

#include "detection/FrameSearch.h"
#include "detection/LumaDecoding.h"
#include "detection/TwoThreads.h"

namespace quillmark {
namespace {

/// Whatever happens, the rows are closed or abandoned: somebody waits for them.
bool readAll(const LumaSource &source, LumaRows &rows)
{
    try {
        if (source.read(rows)) {
            rows.close();
            return true;
        }
    } catch (...) {
        rows.abandon();
        throw;
    }
    rows.abandon();
    return false;
}

} // namespace

std::vector<std::optional<QString>> scanFrame(const std::filesystem::path &file)
{
    std::vector<std::optional<QString>> texts;
    decodeLuma(file, [&texts](const LumaSource &source) {
        LumaRows rows(source.width, source.height);
        auto [decoded, found] =
            runBoth([&] { return readAll(source, rows); }, [&] { return searchFrame(rows); });
        texts = found.texts();
        return decoded;
    });
    return texts;
}

} // namespace quillmark
