// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/FileUrl.h"
#include "support/Printers.h"

#include <gtest/gtest.h>

#include <string>

namespace quillmark {
namespace {

using Path = std::filesystem::path;

QUrl url(const char *encoded)
{
    return QUrl::fromEncoded(encoded);
}

TEST(FileUrl, givesThePathOfALocalFile)
{
    EXPECT_EQ(pathFromFileUrl(url("file:///rolls/12")), Path("/rolls/12"));
    EXPECT_EQ(pathFromFileUrl(url("file://localhost/rolls/12")), Path("/rolls/12"));
}

TEST(FileUrl, decodesWhatIsPercentEncoded)
{
    EXPECT_EQ(pathFromFileUrl(url("file:///rolls/roll%20%2312%3F")), Path("/rolls/roll #12?"));
    EXPECT_EQ(pathFromFileUrl(url("file:///rolls/Gr%C3%BCn")), Path("/rolls/Gr\u00fcn"));
    EXPECT_EQ(pathFromFileUrl(url("file:///rolls/Gr\u00fcn")), Path("/rolls/Gr\u00fcn"));
}

TEST(FileUrl, doesNotDecodeTwice)
{
    EXPECT_EQ(pathFromFileUrl(url("file:///rolls/100%2525")), Path("/rolls/100%25"));
}

TEST(FileUrl, keepsBytesThatAreNotUtf8)
{
    EXPECT_EQ(pathFromFileUrl(url("file:///rolls/caf%E9%FF")), Path("/rolls/caf\xe9\xff"));
}

TEST(FileUrl, refusesWhatIsNotAFileOfThisMachine)
{
    EXPECT_EQ(pathFromFileUrl(url("https://example.org/rolls")), std::nullopt);
    EXPECT_EQ(pathFromFileUrl(url("file://elsewhere/rolls")), std::nullopt);
    EXPECT_EQ(pathFromFileUrl(url("rolls/12")), std::nullopt);
    EXPECT_EQ(pathFromFileUrl(url("file:rolls")), std::nullopt);
    EXPECT_EQ(pathFromFileUrl(url("file:///rolls/%00")), std::nullopt);
    EXPECT_EQ(pathFromFileUrl(QUrl()), std::nullopt);
}

class FileUrlRoundTrip : public ::testing::TestWithParam<std::string>
{};

TEST_P(FileUrlRoundTrip, keepsEveryByte)
{
    const Path path = "/rolls/" + GetParam();
    EXPECT_EQ(pathFromFileUrl(fileUrlFromPath(path)), path);
}

INSTANTIATE_TEST_SUITE_P(Names, FileUrlRoundTrip,
                         ::testing::Values("12", "a b", "100%", "%41", "a?b#c", "a;b&c=d", "a:b",
                                           "line\nbreak", "Gr\u00fcn", "\xff\xfe caf\xe9", "\u591c",
                                           "[x]{y}", "back\\slash", "+"));

} // namespace
} // namespace quillmark
