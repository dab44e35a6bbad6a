// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// Files made to exhaust memory or patience are refused, or read within bounds. Each is looked at
// by a process of its own, and says on the standard output what it took.

#include "detection/zoo/Bombs.h"
#include "support/TempDir.h"

#include <QProcess>
#include <QTextStream>

#include <gtest/gtest.h>

#include <cstdio>

namespace quillmark::test {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr double slowness = 20;
constexpr bool hasOwnMemory = false; // but also the sanitizer's
#else
constexpr double slowness = 1;
constexpr bool hasOwnMemory = true;
#endif

constexpr double mostSeconds = 5;

/// In MB, of a frame of so many megapixels.
constexpr double mostMemory(double megapixels)
{
    return 60 + 1.3 * megapixels;
}

struct Cost {
    QString outcome;
    double megabytes = 0;
    double seconds = 0;
};

Cost probed(const std::filesystem::path &file, const QString &what)
{
    QProcess probe;
    probe.start(QStringLiteral(QUILLMARK_BOMB_PROBE), {what, QString::fromStdString(file)});
    probe.waitForFinished(-1);
    QTextStream line(probe.readAllStandardOutput());
    Cost cost;
    line >> cost.outcome >> cost.megabytes >> cost.seconds;
    return cost;
}

class BombZoo : public ::testing::TestWithParam<Bomb>
{};

TEST_P(BombZoo, costsLittle)
{
    const Bomb &bomb = GetParam();
    const TempDir folder;
    bomb.write(folder / "bomb");

    for (const QString &what : {QStringLiteral("scan"), QStringLiteral("picture")}) {
        const Cost cost = probed(folder / "bomb", what);

        const char *expected = bomb.megapixels > 0 ? "read" : "refused";
        std::printf("zoo: %-9s %-9s %s, as a %s: %.0f MB, %.2f s\n", qPrintable(cost.outcome),
                    expected, bomb.how.c_str(), what == QLatin1String("scan") ? "frame" : "picture",
                    cost.megabytes, cost.seconds);
        EXPECT_EQ(cost.outcome.toStdString(), expected);
        EXPECT_LE(cost.seconds, mostSeconds * slowness);
        if (hasOwnMemory) {
            EXPECT_LE(cost.megabytes, mostMemory(bomb.megapixels));
        }
    }
}

const auto bombName = [](const auto &info) { return info.param.name; };

INSTANTIATE_TEST_SUITE_P(Jpeg, BombZoo, ::testing::ValuesIn(jpegBombs()), bombName);
INSTANTIATE_TEST_SUITE_P(Tiff, BombZoo, ::testing::ValuesIn(tiffBombs()), bombName);
INSTANTIATE_TEST_SUITE_P(Packed, BombZoo, ::testing::ValuesIn(packedBombs()), bombName);

} // namespace
} // namespace quillmark::test
