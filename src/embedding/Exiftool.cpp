// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "embedding/Exiftool.h"

#include "base/Background.h"
#include "embedding/EmbedRun.h"

#include <utility>

namespace quillmark {

ExiftoolError::ExiftoolError(Case which, QString description, QString stderrText, std::int32_t code)
    : m_case(which),
      m_description(std::move(description)),
      m_stderrText(std::move(stderrText)),
      m_code(code),
      m_what(m_description.toUtf8())
{}

ExiftoolError ExiftoolError::notInstalled()
{
    return {Case::notInstalled,
            QStringLiteral("exiftool not found. The app bundle is missing its vendored exiftool "
                           "\u2014 please reinstall Quillmark."),
            QString(), 0};
}

ExiftoolError ExiftoolError::failed(const QString &stderrText, std::int32_t code)
{
    return {Case::failed,
            QStringLiteral("exiftool exited with code ") + QString::number(code) +
                QStringLiteral("\n\n") + stderrText,
            stderrText, code};
}

namespace {

/// The whole of an embedding that blocks.
void embedBlocking(const std::vector<std::filesystem::path> &files, const SlatePayload &payload,
                   const QString &generatorVersion)
{
    runEmbed({.program = Exiftool::locate(), .configuration = Exiftool::configURL()}, files,
             payload, generatorVersion);
}

} // namespace

QCoro::Task<> Exiftool::embed(std::vector<std::filesystem::path> in, SlatePayload payload,
                              QString generatorVersion)
{
    if (in.empty()) {
        co_return;
    }
    co_await runInBackground(&embedBlocking, std::move(in), std::move(payload),
                             std::move(generatorVersion));
}

} // namespace quillmark
