// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/updates/Appcast.h"

#include <QString>

#include <optional>

namespace quillmark {

/// What a package is chosen by.
struct SystemFacts {
    QString os;            ///< as feeds name it: "linux"
    QString systemVersion; ///< of the kernel, as in "6.1.0"
    QString architecture;  ///< as in "x86_64" or "arm64"
};

/// Of the machine that this runs on. Any thread.
SystemFacts ownSystemFacts();

/// The item with the highest version above the current one that is meant for such a system; the
/// first of several that are equal. Items of a channel are for those who ask for it, which
/// nobody can do here. Any thread.
std::optional<AppcastItem> newestUpdate(const Appcast &appcast, const QString &currentVersion,
                                        const SystemFacts &system);

} // namespace quillmark
