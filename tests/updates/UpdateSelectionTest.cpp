// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/UpdateSelection.h"

#include <gtest/gtest.h>

#include <utility>

namespace quillmark {
namespace {

const SystemFacts system{.os = QStringLiteral("linux"),
                         .systemVersion = QStringLiteral("6.1.0"),
                         .architecture = QStringLiteral("x86_64")};

AppcastItem item(const char *version)
{
    AppcastItem made;
    made.version = QString::fromLatin1(version);
    made.os = QStringLiteral("linux");
    return made;
}

QString newest(std::vector<AppcastItem> items, const char *current = "1.0")
{
    const auto found =
        newestUpdate({.items = std::move(items), .date = {}}, QString::fromLatin1(current), system);
    return found ? found->version : QString();
}

TEST(UpdateSelection, highestVersionWinsWhereverItStands)
{
    EXPECT_EQ(newest({item("1.1"), item("1.10"), item("1.9")}), QStringLiteral("1.10"));
}

TEST(UpdateSelection, neverTheSameOrAnOlderOne)
{
    EXPECT_EQ(newest({item("1.0"), item("1.0.0"), item("1.0b7"), item("0.9")}), QString());
    EXPECT_EQ(newest({}), QString());
}

TEST(UpdateSelection, firstOfEquals)
{
    AppcastItem first = item("2.0");
    first.notes = QStringLiteral("first");
    const auto found =
        newestUpdate({.items = {first, item("2.0.0")}, .date = {}}, QStringLiteral("1.0"), system);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->notes, QStringLiteral("first"));
}

TEST(UpdateSelection, otherSystemsArePassedOver)
{
    for (const char *os : {"", "macos", "windows", "Linux"}) {
        AppcastItem other = item("3.0");
        other.os = QString::fromLatin1(os);
        EXPECT_EQ(newest({other, item("2.0")}), QStringLiteral("2.0")) << os;
    }
}

TEST(UpdateSelection, otherArchitecturesArePassedOver)
{
    AppcastItem other = item("3.0");
    other.architectures = {QStringLiteral("arm64"), QStringLiteral("riscv64")};
    EXPECT_EQ(newest({other, item("2.0")}), QStringLiteral("2.0"));
    other.architectures << QStringLiteral("AMD64");
    EXPECT_EQ(newest({other, item("2.0")}), QStringLiteral("3.0"));
}

TEST(UpdateSelection, systemMustBeNewEnough)
{
    AppcastItem demanding = item("3.0");
    demanding.minimumSystemVersion = QStringLiteral("6.1.1");
    EXPECT_EQ(newest({demanding, item("2.0")}), QStringLiteral("2.0"));
    demanding.minimumSystemVersion = QStringLiteral("6.1");
    EXPECT_EQ(newest({demanding, item("2.0")}), QStringLiteral("3.0"));
}

TEST(UpdateSelection, systemMustBeOldEnough)
{
    AppcastItem last = item("3.0");
    last.maximumSystemVersion = QStringLiteral("5.99");
    EXPECT_EQ(newest({last, item("2.0")}), QStringLiteral("2.0"));
    last.maximumSystemVersion = QStringLiteral("6.1.0");
    EXPECT_EQ(newest({last, item("2.0")}), QStringLiteral("3.0"));
}

TEST(UpdateSelection, channelsArePassedOver)
{
    AppcastItem beta = item("3.0");
    beta.channel = QStringLiteral("beta");
    EXPECT_EQ(newest({beta, item("2.0")}), QStringLiteral("2.0"));
}

TEST(UpdateSelection, knowsThisSystem)
{
    const SystemFacts own = ownSystemFacts();
    EXPECT_EQ(own.os, QStringLiteral("linux"));
    EXPECT_FALSE(own.architecture.isEmpty());
    ASSERT_FALSE(own.systemVersion.isEmpty());
    EXPECT_TRUE(own.systemVersion.front().isDigit());
    EXPECT_FALSE(own.systemVersion.contains(u'-'));
}

} // namespace
} // namespace quillmark
