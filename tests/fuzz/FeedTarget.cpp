// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/Appcast.h"
#include "app/updates/UpdateError.h"
#include "app/updates/UpdateSelection.h"
#include "app/updates/VersionOrder.h"
#include "fuzz/Target.h"

namespace quillmark::fuzz {
namespace {

/// Of items next to each other, as a full comparison would take its time.
void compareItems(const Appcast &appcast)
{
    for (std::size_t i = 1; i < appcast.items.size(); ++i) {
        const QString &left = appcast.items[i - 1].version;
        const QString &right = appcast.items[i].version;
        require(compareVersions(left, left) == 0, "a version equals itself");
        require(compareVersions(left, right) == 0 <=> compareVersions(right, left),
                "versions compare the same both ways");
    }
}

void choose(const Appcast &appcast)
{
    const QString current = QStringLiteral("1.2");
    const SystemFacts system{QStringLiteral("linux"), QStringLiteral("6.1.0"),
                             QStringLiteral("x86_64")};
    const std::optional<AppcastItem> newest = newestUpdate(appcast, current, system);
    require(!newest || compareVersions(newest->version, current) > 0, "an update is newer");
}

void readFeed(Bytes bytes)
{
    try {
        const Appcast appcast = readAppcast(
            {reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(bytes.size())});
        for (const AppcastItem &item : appcast.items) {
            require(!item.version.isEmpty() && item.version.size() <= longestAppcastVersion,
                    "an item has a version");
            require(!item.shortVersion.isEmpty(), "an item has a name");
            require(item.packageBytes >= 0, "a package has no negative size");
        }
        compareItems(appcast);
        choose(appcast);
    } catch (const UpdateError &error) {
        require(error.which() == UpdateError::Case::malformedFeed ||
                    error.which() == UpdateError::Case::tooLarge,
                "a feed is refused for its own sake");
        require(!error.description().isEmpty(), "a refusal says why");
    }
}

} // namespace
} // namespace quillmark::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const quillmark::fuzz::TimeLimit limit;
    quillmark::fuzz::readFeed({data, size});
    return 0;
}
