// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/VersionOrder.h"

#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

namespace quillmark {
namespace {

std::weak_ordering reversed(std::weak_ordering order)
{
    return std::is_lt(order)   ? std::weak_ordering::greater
           : std::is_gt(order) ? std::weak_ordering::less
                               : order;
}

void expectOrder(const QString &left, const QString &right, std::weak_ordering wanted)
{
    EXPECT_TRUE(compareVersions(left, right) == wanted)
        << qPrintable(left) << " and " << qPrintable(right);
    EXPECT_TRUE(compareVersions(right, left) == reversed(wanted))
        << qPrintable(right) << " and " << qPrintable(left);
}

TEST(VersionOrder, everyPairOfALadder)
{
    const QStringList ladder{
        QString(),
        QStringLiteral("0.0.1"),
        QStringLiteral("0.9"),
        QStringLiteral("0.10"),
        QStringLiteral("1.0a1"),
        QStringLiteral("1.0a2"),
        QStringLiteral("1.0b"),
        QStringLiteral("1.0b1"),
        QStringLiteral("1.0b2"),
        QStringLiteral("1.0b10"),
        QStringLiteral("1.0 rc1"),
        QStringLiteral("1.0"),
        QStringLiteral("1.0.1b3"),
        QStringLiteral("1.0.1"),
        QStringLiteral("1.1"),
        QStringLiteral("1.10"),
        QStringLiteral("2"),
        QStringLiteral("2026.11.20"),
        QStringLiteral("99999999999999999999"),
        QStringLiteral("100000000000000000000"),
    };
    for (qsizetype low = 0; low < ladder.size(); ++low) {
        for (qsizetype high = low + 1; high < ladder.size(); ++high) {
            expectOrder(ladder[low], ladder[high], std::weak_ordering::less);
        }
    }
}

TEST(VersionOrder, waysOfWritingTheSame)
{
    for (const auto &[left, right] : std::initializer_list<std::pair<QString, QString>>{
             {QStringLiteral("1.2"), QStringLiteral("1.2.0")},
             {QStringLiteral("1.2"), QStringLiteral("01.02")},
             {QStringLiteral("1.2b1"), QStringLiteral("1.2.0-b.1")},
             {QStringLiteral("1.2RC1"), QStringLiteral("1.2rc1")},
             {QStringLiteral("1.2"), QStringLiteral("1.2+build.7")},
             {QStringLiteral("1.2"), QStringLiteral(" 1.2 ")},
             {QString(), QStringLiteral("0")},
         }) {
        expectOrder(left, right, std::weak_ordering::equivalent);
    }
}

TEST(VersionOrder, digitsOfOtherScriptsAreNoNumbers)
{
    // Arabic-Indic three: a separator, as every character that is neither letter nor digit.
    expectOrder(QStringLiteral("1.\u0663"), QStringLiteral("1"), std::weak_ordering::equivalent);
}

TEST(VersionOrder, veryLongVersions)
{
    const QString nines(100'000, u'9');
    expectOrder(nines, u'1' + QString(100'000, u'0'), std::weak_ordering::less);
    expectOrder(nines, nines, std::weak_ordering::equivalent);
}

} // namespace
} // namespace quillmark
