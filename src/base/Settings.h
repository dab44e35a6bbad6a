// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace quillmark {

/// The program's own settings of this user, across launches: a value for each key, in a file
/// of the key's name in Larkhollow/Quillmark below the user's folder for configurations.
///
/// Not QSettings: where the disk is full it replaces everything stored by nothing, and it
/// waits without an end for a lock that a process left behind, be it its own.
namespace Settings {

/// The bytes under the key; nothing where there are none, or they cannot be read. Any thread.
std::optional<QByteArray> value(const QString &key);

/// Replaces the bytes under the key in one step: until the new ones are on disk, those of before
/// are still there. Failures are silent. Any thread.
void store(const QString &key, const QByteArray &value);

} // namespace Settings
} // namespace quillmark
