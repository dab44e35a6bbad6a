// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/Described.h"
#include "payload/SlatePayload.h"

#include <QByteArray>
#include <QCoro/QCoroTask>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <exception>
#include <filesystem>
#include <optional>
#include <vector>

namespace quillmark {

/// Why metadata could not be written.
class ExiftoolError : public std::exception, public Described
{
public:
    enum class Case {
        notInstalled, ///< no usable exiftool was found
        failed,       ///< it ended with a non-zero status, or could not be set up (code -1)
    };

    static ExiftoolError notInstalled();
    static ExiftoolError failed(const QString &stderrText, std::int32_t code);

    Case which() const { return m_case; }
    QString description() const override { return m_description; }
    const char *what() const noexcept override { return m_what.constData(); }

    /// What the tool wrote to its error stream; empty unless which() is failed.
    QString stderrText() const { return m_stderrText; }
    /// The exit status; 0 unless which() is failed.
    std::int32_t code() const { return m_code; }

private:
    ExiftoolError(Case which, QString description, QString stderrText, std::int32_t code);

    Case m_case;
    QString m_description;
    QString m_stderrText;
    std::int32_t m_code;
    QByteArray m_what;
};

/// Writes payloads into images through the exiftool program. Stateless.
namespace Exiftool {

/// The tag assignments for a payload, in the order in which exiftool receives them: values
/// are inserted verbatim, since no shell ever sees them. Any thread.
QStringList tagArguments(const SlatePayload &payload, const QString &generatorVersion);

/// The exiftool to run: the one in the resource bundle (exiftool/exiftool), else the usual
/// install locations; nothing where none is executable. PATH is not consulted. Any thread.
std::optional<std::filesystem::path> locate();

/// The configuration that declares the private XMP namespace: quillmark.config in the
/// resource bundle, else in the application's own folder. Any thread.
std::optional<std::filesystem::path> configURL();

/// Writes the payload into all the files with one exiftool child, in place, and returns
/// when the child has ended. An empty list is a success without a look at anything.
/// A folder among the files stands for the images directly in it; a symbolic link is
/// replaced by a written copy of its target, which itself stays as it is. What does not fit
/// a tag (an ISO above 65535 in EXIF, more than 32 bytes of an IPTC city) is left out or
/// cut by exiftool with a warning, which is no failure; RawPayload has everything.
///
/// Throws ExiftoolError, or std::system_error where the child cannot be started. Files
/// that were written before a failure stay written. To be awaited on a thread with an
/// event loop; the waiting happens on a background worker.
QCoro::Task<> embed(std::vector<std::filesystem::path> in, SlatePayload payload,
                    QString generatorVersion);

} // namespace Exiftool
} // namespace quillmark
