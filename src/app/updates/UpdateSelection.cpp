// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/UpdateSelection.h"

#include "app/updates/VersionOrder.h"

#include <QSysInfo>

#include <algorithm>
#include <compare>

namespace quillmark {
namespace {

/// Distributions and toolchains have names of their own for these.
QString commonArchitecture(const QString &name)
{
    const QString lower = name.toLower();
    if (lower == QLatin1String("amd64") || lower == QLatin1String("x64")) {
        return QStringLiteral("x86_64");
    }
    return lower == QLatin1String("aarch64") ? QStringLiteral("arm64") : lower;
}

bool isMeantFor(const AppcastItem &item, const SystemFacts &system)
{
    const QString architecture = commonArchitecture(system.architecture);
    const auto isOwn = [&](const QString &name) {
        return commonArchitecture(name) == architecture;
    };
    return item.os == system.os && item.channel.isEmpty() &&
           (item.architectures.isEmpty() ||
            std::any_of(item.architectures.begin(), item.architectures.end(), isOwn)) &&
           (item.minimumSystemVersion.isEmpty() ||
            std::is_lteq(compareVersions(item.minimumSystemVersion, system.systemVersion))) &&
           (item.maximumSystemVersion.isEmpty() ||
            std::is_gteq(compareVersions(item.maximumSystemVersion, system.systemVersion)));
}

} // namespace

SystemFacts ownSystemFacts()
{
    // Distributions number their releases each in its own way; the kernel's number is the one
    // that all of them share. What follows its dash is the distribution's again.
    return {.os = QStringLiteral("linux"),
            .systemVersion = QSysInfo::kernelVersion().section(u'-', 0, 0),
            .architecture = QSysInfo::buildCpuArchitecture()};
}

std::optional<AppcastItem> newestUpdate(const Appcast &appcast, const QString &currentVersion,
                                        const SystemFacts &system)
{
    const AppcastItem *newest = nullptr;
    for (const AppcastItem &item : appcast.items) {
        if (isMeantFor(item, system) &&
            std::is_gt(compareVersions(item.version, newest ? newest->version : currentVersion))) {
            newest = &item;
        }
    }
    return newest ? std::optional(*newest) : std::nullopt;
}

} // namespace quillmark
