// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringView>

namespace quillmark {

/// The text without the horizontal white space at both ends: tab and the Unicode space
/// separators (Zs). Line breaks stay.
QString withoutOuterSpaces(QStringView text);

/// The text without the white space and line breaks at both ends: the above, U+000A to
/// U+000D, U+0085, U+2028 and U+2029.
QString withoutOuterWhiteSpace(QStringView text);

} // namespace quillmark
