// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QUrl>

#include <optional>

namespace quillmark {

/// The name under which a package is stored: the last part of its address, with everything but
/// ASCII letters, digits and "._+~-" replaced by "-", and at most 100 characters long. Nothing
/// where its ending is none of a package that a package installer opens (deb, rpm, flatpak,
/// snap, pkg.tar.zst, pkg.tar.xz): other files could be opened by anything. Any thread.
std::optional<QString> packageFileName(const QUrl &address);

} // namespace quillmark
