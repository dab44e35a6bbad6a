// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "rolls/OddRoll.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillmark::test {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::SizeIs;

/// Names that some program or other would take for something else than a name.
const std::vector<std::string> &oddNames()
{
    static const std::vector<std::string> names{
        "line\nbreak.jpg",
        "\n.jpg",
        "carriage\rreturn\tand\x01\x1B[31mcontrols\x7F.jpg",
        "-dash.jpg",
        "-delete_original!.jpg",
        "@list.jpg",
        "\"'`quotes.jpg",
        "a=b+=c<=d.jpg",
        "%f%d%%.jpg",
        "$HOME;id&|.jpg",
        "*?[a]{b}.jpg",
        "back\\slash\\n.jpg",
        " blank .jpg",
        "two.jpg..jpg",
        "#comment.jpg",
        "<b>bold<br>&amp;.jpg",
        "\xF0\x9F\x8E\x9E\xEF\xB8\x8F\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7.jpg",
        "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D \xD9\x85\xD8\xB1\xD8\xAD\xD8\xA8\xD8\xA7 12.jpg",
        "\xE2\x80\xAEgpj.\xE2\x80\xAC.jpg",
        "e\xCC\x81.jpg",
        "\xC3\xA9.jpg",
        "caf\xE9.jpg",
        "\xFF\xFE\xC0\x80.jpg",
        std::string(238, 'n') + ".jpg", // the longest beside which exiftool has room
    };
    return names;
}

/// The names of a folder's entries that look like images, in no order.
std::vector<std::string> namesIn(const fs::path &folder)
{
    std::vector<std::string> names;
    for (const fs::path &image : SlateDetector::enumerateImages(folder, false)) {
        names.push_back(image.filename().native());
    }
    return names;
}

class OddNames : public OddRoll, public ::testing::WithParamInterface<BackupMode>
{};

TEST_P(OddNames, areTaggedLikeAllOthers)
{
    slate();
    for (const std::string &name : oddNames()) {
        frame(name);
    }
    EXPECT_EQ(ingest(GetParam()), "");
    const IngestOutcome outcome = in<Session::Done>(session).outcome;
    EXPECT_THAT(outcome.mutated, SizeIs(oddNames().size() + 1));
    for (const fs::path &file : outcome.mutated) {
        EXPECT_TRUE(isTagged(file)) << file;
    }
    for (const std::string &name : oddNames()) {
        EXPECT_THAT(namesIn(outcome.mutated.front().parent_path()), Contains(name));
    }
    expectNothingLost(GetParam());
    expectNoLeftovers(roll.path());
}

INSTANTIATE_TEST_SUITE_P(OddRoll, OddNames,
                         ::testing::Values(BackupMode::backupOriginals, BackupMode::writeCopies,
                                           BackupMode::none),
                         titleOf);

TEST_F(OddRoll, aSlateOfAnyNameIsFound)
{
    for (const std::string &name : oddNames()) {
        slate();
        fs::rename(roll / "00.jpg", roll / name);
        await(session.scan(roll.path()));
        EXPECT_EQ(in<Session::Ready>(session).plan.detection.file, roll / name);
        fs::remove(roll / name);
    }
}

TEST_F(OddRoll, aRollOfAnyNameIsScanned)
{
    const fs::path file = slate();
    fs::path folder = roll / "roll";
    fs::create_directory(folder);
    fs::rename(file, folder / "00.jpg");
    for (const std::string &name : oddNames()) {
        fs::rename(folder, roll / name);
        folder = roll / name;
        await(session.scan(folder));
        EXPECT_EQ(in<Session::Ready>(session).plan.folder, folder);
        EXPECT_EQ(in<Session::Ready>(session).plan.detection.file, folder / "00.jpg");
    }
}

TEST_F(OddRoll, aRollOfAnyNameIsTagged)
{
    for (const std::string name : {"-line\nbreak", "@caf\xE9%f",
                                   "\xD7\xA9\xD7\x9C\xE2\x80\xAE \xF0\x9F\x8E\x9E\xE2\x80\xAC"}) {
        const fs::path folder = roll / name;
        fs::create_directory(folder);
        const fs::path frame = folder / "00.jpg";
        fs::rename(slate(), frame);
        const std::string content = readFile(frame);
        EXPECT_EQ(ingest(BackupMode::backupOriginals, folder), "");
        EXPECT_TRUE(isTagged(frame));
        EXPECT_EQ(readFile(folder / "_originals" / "00.jpg"), content);
    }
}

TEST_F(OddRoll, aNameTooLongToBeWrittenIsNamedAndTheRestIsTagged)
{
    slate();
    const std::string longest = std::string(251, 'n') + ".jpg";
    frame(longest);
    frame("02.jpg");
    for (const BackupMode mode : allBackupModes) {
        const std::string error = ingest(mode);
        EXPECT_THAT(error, HasSubstr("exiftool exited with code 1\n\n"));
        EXPECT_THAT(error, HasSubstr(longest));
        expectNothingLost(mode);
        expectNoLeftovers(roll.path());
        for (const std::string name : {"00.jpg", "02.jpg"}) {
            EXPECT_TRUE(isTagged(
                (mode == BackupMode::writeCopies ? roll / "_tagged" : roll.path()) / name));
        }
        EXPECT_EQ(readFile(roll / longest), contentOf(roll / longest));
        fs::remove_all(roll / "_originals");
        slate();
        frame("02.jpg");
    }
}

} // namespace
} // namespace quillmark::test
