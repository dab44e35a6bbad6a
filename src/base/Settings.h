// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QVariant>

namespace quillmark {

/// The program's own settings of this user, across launches, whatever executable the library
/// is linked into. Failures are silent: what cannot be stored is not stored.
namespace Settings {

/// The value under the key; an invalid one where there is none. Main thread.
QVariant value(const QString &key);

/// Replaces the value, on disk when this returns. What other running instances store at the
/// same time is kept; one that is stuck with it is waited for two seconds, and then nothing is
/// stored. Main thread.
void store(const QString &key, const QVariant &value);

} // namespace Settings
} // namespace quillmark
