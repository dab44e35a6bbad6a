// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "base/Trim.h"

#include <algorithm>
#include <iterator>

namespace quillmark {
namespace {

bool isHorizontalSpace(QChar c)
{
    return c == u'\t' || c.category() == QChar::Separator_Space;
}

bool isLineBreak(QChar c)
{
    return (c >= u'\n' && c <= u'\r') || c == u'\u0085' || c == u'\u2028' || c == u'\u2029';
}

// All white space lies in the basic plane, so single UTF-16 units can be judged.
template <typename Predicate>
QString withoutOuter(QStringView text, Predicate isOuter)
{
    const auto first = std::find_if_not(text.begin(), text.end(), isOuter);
    const auto last = std::find_if_not(text.rbegin(), std::make_reverse_iterator(first), isOuter);
    return QStringView(first, last.base()).toString();
}

} // namespace

QString withoutOuterSpaces(QStringView text)
{
    return withoutOuter(text, isHorizontalSpace);
}

QString withoutOuterWhiteSpace(QStringView text)
{
    return withoutOuter(text, [](QChar c) { return isHorizontalSpace(c) || isLineBreak(c); });
}

} // namespace quillmark
