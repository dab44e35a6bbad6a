// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "embedding/EmbedRun.h"

#include "embedding/ChildProcess.h"
#include "embedding/Exiftool.h"
#include "embedding/Leftovers.h"
#include "embedding/WritingMark.h"

#include <QByteArray>

#include <algorithm>
#include <iterator>

namespace quillmark {
namespace {

namespace fs = std::filesystem;

constexpr QChar nul(u'\0');

/// An argument ends at U+0000: exiftool would be given the beginning of the text and take it for
/// the whole. The private namespace has each text of a payload under the name of its field.
void refuseNul(const QStringList &tagArguments)
{
    const QString prefix = QStringLiteral("-XMP-quillmark:");
    QStringList fields;
    for (const QString &argument : tagArguments) {
        if (argument.contains(nul) && argument.startsWith(prefix)) {
            fields << argument.sliced(prefix.size()).section(u'=', 0, 0);
        }
    }
    if (!fields.isEmpty()) {
        throw ExiftoolError::failed(
            QStringLiteral("No file was tagged, because exiftool cannot be given a text that "
                           "holds the character U+0000: ") +
                fields.join(QStringLiteral(", ")),
            -1);
    }
}

/// A stream's text; empty where it is not UTF-8.
QString streamText(const QByteArray &utf8)
{
    return utf8.isValidUtf8() ? QString::fromUtf8(utf8) : QString();
}

/// Without a last character of which the end is missing.
QByteArray withoutPartOfCharacter(QByteArray utf8)
{
    constexpr qsizetype longest = 4;
    for (qsizetype length = 1; length <= std::min(longest, utf8.size()); ++length) {
        const auto unit = static_cast<unsigned char>(utf8[utf8.size() - length]);
        const bool isContinuation = (unit & 0xC0U) == 0x80U;
        if (!isContinuation) {
            if (!utf8.last(length).isValidUtf8()) {
                utf8.chop(length);
            }
            break;
        }
    }
    return utf8;
}

QString errorText(const ChildResult &result)
{
    const auto errors = QByteArray::fromStdString(result.errors);
    return result.errorsAreCut
               ? streamText(withoutPartOfCharacter(errors)) +
                     QStringLiteral("\n\n(The rest of what exiftool said is left out.)")
               : streamText(errors);
}

} // namespace

std::vector<std::string> absoluteNames(const std::vector<std::filesystem::path> &files)
{
    std::vector<std::string> names;
    names.reserve(files.size());
    std::transform(files.begin(), files.end(), std::back_inserter(names), [](const fs::path &file) {
        return file.is_absolute() ? file.native() : fs::absolute(file).native();
    });
    return names;
}

std::vector<std::string> embedArguments(const std::filesystem::path &configuration,
                                        const QStringList &tagArguments,
                                        const std::vector<std::string> &files)
{
    // exiftool reads "-config" in first place only. IPTC text is written as UTF-8 and
    // flagged so by the coded character set (IPTC-IIM 4.2, dataset 1:90).
    std::vector<std::string> arguments{
        "-config",
        configuration.native(),
        "-overwrite_original",
        "-codedcharacterset=utf8",
        "-charset",
        "iptc=UTF8",
    };
    arguments.reserve(arguments.size() + static_cast<std::size_t>(tagArguments.size()) +
                      files.size());
    for (const QString &argument : tagArguments) {
        arguments.push_back(argument.toStdString());
    }
    arguments.insert(arguments.end(), files.begin(), files.end());
    return arguments;
}

void runEmbed(const ExiftoolSetup &setup, const std::vector<std::filesystem::path> &files,
              const SlatePayload &payload, const QString &generatorVersion)
{
    if (!setup.program) {
        throw ExiftoolError::notInstalled();
    }
    if (!setup.configuration) {
        throw ExiftoolError::failed(QStringLiteral("Bundled quillmark.config missing"), -1);
    }
    const QStringList tagArguments = Exiftool::tagArguments(payload, generatorVersion);
    refuseNul(tagArguments);
    const std::vector<std::string> names = absoluteNames(files);
    WritingMark mark(commonFolder(names));
    removeLeftovers(names, mark);
    const ChildResult result =
        runChildKeeping(mark.descriptor(), *setup.program,
                        embedArguments(*setup.configuration, tagArguments, names));
    if (result.status != 0) {
        removeLeftovers(names, mark);
        throw ExiftoolError::failed(errorText(result), result.status);
    }
}

} // namespace quillmark
