// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/PackageName.h"

#include <QLatin1StringView>

#include <array>

namespace quillmark {
namespace {

constexpr qsizetype longestName = 100;

bool isPlain(QChar character)
{
    constexpr QLatin1StringView others("._+~-");
    return (character >= u'a' && character <= u'z') || (character >= u'A' && character <= u'Z') ||
           (character >= u'0' && character <= u'9') || others.contains(character);
}

} // namespace

std::optional<QString> packageFileName(const QUrl &address)
{
    constexpr std::array endings{
        QLatin1StringView(".deb"),         QLatin1StringView(".rpm"),
        QLatin1StringView(".flatpak"),     QLatin1StringView(".snap"),
        QLatin1StringView(".pkg.tar.zst"), QLatin1StringView(".pkg.tar.xz"),
    };
    QString name = address.fileName(QUrl::FullyDecoded).right(longestName);
    for (QChar &each : name) {
        each = isPlain(each) ? each : QChar(u'-');
    }
    if (name.startsWith(u'.')) {
        name[0] = u'-'; // hidden otherwise
    }
    for (const QLatin1StringView ending : endings) {
        if (name.endsWith(ending) && name.size() > ending.size()) {
            return name;
        }
    }
    return std::nullopt;
}

} // namespace quillmark
