// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringView>

#include <compare>

namespace quillmark {

/// Which of two versions comes first, as feeds of versions commonly mean it.
///
/// A version is read as runs of digits and runs of letters; everything between them only
/// separates, and what follows a "+" is not looked at. Numbers are compared as numbers of any
/// length and letters as text whatever their case. The numbers in front are the release, in
/// which missing ones are zero (1.2 is 1.2.0). Letters after them make what leads to that
/// release: 1.2a1 < 1.2b1 < 1.2b2 < 1.2rc1 < 1.2 < 1.2.1. Any thread.
std::weak_ordering compareVersions(QStringView left, QStringView right);

} // namespace quillmark
