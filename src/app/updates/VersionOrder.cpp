// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/VersionOrder.h"

#include <algorithm>
#include <vector>

namespace quillmark {
namespace {

struct Run {
    bool number = false;
    QStringView text; ///< a number's without leading zeros: nothing is left of a zero
};

enum class Kind { Digit, Letter, Separator };

Kind kindOf(QChar character)
{
    // Only the digits whose order is that of their codes are numbers here.
    if (character >= u'0' && character <= u'9') {
        return Kind::Digit;
    }
    return character.isLetter() ? Kind::Letter : Kind::Separator;
}

std::vector<Run> runsOf(QStringView version)
{
    version = version.left(version.indexOf(u'+')); // all of it where there is none
    std::vector<Run> runs;
    for (qsizetype at = 0; at < version.size();) {
        const Kind kind = kindOf(version[at]);
        qsizetype end = at;
        while (end < version.size() && kindOf(version[end]) == kind) {
            ++end;
        }
        QStringView text = version.sliced(at, end - at);
        at = end;
        if (kind == Kind::Separator) {
            continue;
        }
        while (kind == Kind::Digit && text.startsWith(u'0')) {
            text = text.sliced(1);
        }
        runs.push_back({kind == Kind::Digit, text});
    }
    return runs;
}

std::weak_ordering order(qsizetype difference)
{
    return difference <=> 0;
}

/// What is missing counts as a zero.
std::weak_ordering compareNumbers(QStringView left, QStringView right)
{
    if (left.size() != right.size()) {
        return order(left.size() - right.size());
    }
    return order(left.compare(right));
}

std::weak_ordering compareRuns(const Run *left, const Run *right)
{
    // Letters come before the end, and the end before every number but zero.
    const bool leftLetters = left && !left->number;
    const bool rightLetters = right && !right->number;
    if (leftLetters && rightLetters) {
        return order(left->text.compare(right->text, Qt::CaseInsensitive));
    }
    if (leftLetters || rightLetters) {
        return leftLetters ? std::weak_ordering::less : std::weak_ordering::greater;
    }
    return compareNumbers(left ? left->text : QStringView(), right ? right->text : QStringView());
}

/// Compares two parts run by run, as if the shorter one went on.
std::weak_ordering compareParts(const Run *left, const Run *leftEnd, const Run *right,
                                const Run *rightEnd)
{
    while (left != leftEnd || right != rightEnd) {
        const auto result =
            compareRuns(left != leftEnd ? left++ : nullptr, right != rightEnd ? right++ : nullptr);
        if (std::is_neq(result)) {
            return result;
        }
    }
    return std::weak_ordering::equivalent;
}

} // namespace

std::weak_ordering compareVersions(QStringView left, QStringView right)
{
    const std::vector<Run> leftRuns = runsOf(left);
    const std::vector<Run> rightRuns = runsOf(right);
    const auto isLetters = [](const Run &run) { return !run.number; };
    const auto split = [&](const std::vector<Run> &runs) {
        return runs.data() + (std::find_if(runs.begin(), runs.end(), isLetters) - runs.begin());
    };
    const Run *const leftEnd = leftRuns.data() + leftRuns.size();
    const Run *const rightEnd = rightRuns.data() + rightRuns.size();

    const auto releases =
        compareParts(leftRuns.data(), split(leftRuns), rightRuns.data(), split(rightRuns));
    return std::is_neq(releases)
               ? releases
               : compareParts(split(leftRuns), leftEnd, split(rightRuns), rightEnd);
}

} // namespace quillmark
