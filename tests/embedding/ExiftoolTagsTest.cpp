// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// With the exiftool that is installed: what was sent must be found in the file.

#include "embedding/Exiftool.h"

#include "EmbedSupport.h"
#include "Pixels.h"
#include "TagReader.h"
#include "payload/SlatePayloadJson.h"
#include "support/Printers.h"
#include "support/Samples.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

namespace quillmark {
namespace {

namespace fs = std::filesystem;
using namespace Qt::StringLiterals;
using test::embed;
using test::ExiftoolOnJpeg;
using test::fullPayload;
using test::minimalPayload;
using test::picture;
using test::TagReader;
using test::TempDir;
using test::xmpText;
using ::testing::Contains;
using ::testing::ContainsRegex;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// Expects that the value of every argument that was sent stands in the file.
void expectAllFound(const fs::path &file, const SlatePayload &payload)
{
    const TagReader tags(file);
    QStringList keywords;
    for (const QString &argument : Exiftool::tagArguments(payload, test::generatorVersion())) {
        SCOPED_TRACE(argument.toStdString());
        const qsizetype colon = argument.indexOf(u':');
        const qsizetype equals = argument.indexOf(u'=');
        ASSERT_GT(equals, colon);
        const bool addsToList = argument[equals - 1] == u'+';
        const QString group = argument.mid(1, colon - 1);
        const QString tag = argument.mid(colon + 1, equals - colon - (addsToList ? 2 : 1));
        QString value = argument.mid(equals + 1);
        if (group == u"XMP-xmp") {
            value.replace(u'-', u':'); // exiftool shows all dates in the way of EXIF
        }
        if (addsToList) {
            EXPECT_THAT(tags.values(group, tag), Contains(value));
            keywords << value;
        } else {
            EXPECT_THAT(tags.values(group, tag), ElementsAre(value));
        }
    }
    keywords.removeDuplicates(); // each of them was sent to two lists
    EXPECT_EQ(tags.values(u"IPTC"_s, u"Keywords"_s), keywords);
    EXPECT_EQ(tags.values(u"XMP-dc"_s, u"Subject"_s), keywords);
    EXPECT_EQ(tags.values(u"IPTC"_s, u"CodedCharacterSet"_s), QStringList{u"\x1b%G"_s});
    EXPECT_EQ(decodeSlatePayload(tags.values(u"XMP-quillmark"_s, u"RawPayload"_s).value(0)),
              payload);
}

// --- Every kind of file --------------------------------------------------------

struct FileKind {
    const char *title;
    const char *name;
    void (*write)(const fs::path &);
    std::string (*pixels)(const fs::path &);
};

void PrintTo(const FileKind &kind, std::ostream *out)
{
    *out << kind.name;
}

class ExiftoolOnFiles : public ::testing::TestWithParam<FileKind>
{
protected:
    void SetUp() override
    {
        m_file = m_folder / GetParam().name;
        GetParam().write(m_file);
        m_pixels = GetParam().pixels(m_file);
        ASSERT_FALSE(m_pixels.empty());
    }

    void expectPixelsUnchanged() const { EXPECT_EQ(GetParam().pixels(m_file), m_pixels); }

    TempDir m_folder;
    fs::path m_file;
    std::string m_pixels;
};

TEST_P(ExiftoolOnFiles, everyValueIsInTheFileAfterwards)
{
    embed({m_file}, fullPayload());
    expectAllFound(m_file, fullPayload());
    expectPixelsUnchanged();
}

TEST_P(ExiftoolOnFiles, requiredFieldsAloneAreInTheFileAfterwards)
{
    embed({m_file}, minimalPayload());
    expectAllFound(m_file, minimalPayload());
    expectPixelsUnchanged();
}

TEST_P(ExiftoolOnFiles, nothingButTheFileIsLeftInItsFolder)
{
    embed({m_file}, fullPayload());
    std::vector<fs::path> entries;
    for (const fs::directory_entry &entry : fs::directory_iterator(m_folder.path())) {
        entries.push_back(entry.path());
    }
    EXPECT_THAT(entries, ElementsAre(m_file));
}

void writeJpeg(const fs::path &file)
{
    test::writeJpeg(file, picture());
}

void writeTurnedJpeg(const fs::path &file)
{
    test::JpegOptions options;
    options.progressive = true;
    options.orientation = 6;
    test::writeJpeg(file, picture(), options);
}

void writeTiff(const fs::path &file)
{
    test::writeTiff(file, picture());
}

void writeBigEndianTiff(const fs::path &file)
{
    test::TiffOptions options;
    options.bits = 16;
    options.bigEndian = true;
    test::writeTiff(file, picture(), options);
}

void writeTiffOfTwoPages(const fs::path &file)
{
    test::TiffOptions options;
    options.compression = test::TiffCompression::lzw;
    options.predictor = test::TiffPredictor::horizontal;
    test::writeTiff(file, std::vector{picture(), picture(24, 16)}, options);
}

INSTANTIATE_TEST_SUITE_P(
    Exiftool, ExiftoolOnFiles,
    ::testing::Values(
        FileKind{"jpeg", "frame.jpg", &writeJpeg, &test::jpegPixels},
        FileKind{"turnedProgressiveJpeg", "frame.JPEG", &writeTurnedJpeg, &test::jpegPixels},
        FileKind{"tiff", "frame.tif", &writeTiff, &test::tiffPixels},
        FileKind{"bigEndianTiff", "frame.tiff", &writeBigEndianTiff, &test::tiffPixels},
        FileKind{"tiffOfTwoPages", "frame.TIF", &writeTiffOfTwoPages, &test::tiffPixels}),
    [](const auto &kind) { return std::string(kind.param.title); });

// --- Every kind of value ---------------------------------------------------------

TEST_F(ExiftoolOnJpeg, pushOfZeroIsInTheFileAfterwards)
{
    SlatePayload payload = fullPayload();
    payload.pushPull = 0;
    const fs::path file = jpeg("frame.jpg");
    embed({file}, payload);
    expectAllFound(file, payload);
    EXPECT_THAT(TagReader(file).values(u"XMP-quillmark"_s, u"PushPull"_s), ElementsAre(u"0"_s));
}

TEST_F(ExiftoolOnJpeg, positivePushIsInTheFileAfterwards)
{
    SlatePayload payload = fullPayload();
    payload.pushPull = 2;
    const fs::path file = jpeg("frame.jpg");
    embed({file}, payload);
    expectAllFound(file, payload);
}

TEST_F(ExiftoolOnJpeg, valuesThatLookLikeSyntaxAreText)
{
    SlatePayload payload = fullPayload();
    payload.cameraMake = u"-delete=<=@"_s;
    payload.cameraModel = u"$Make %f \\n &amp; <x>"_s;
    payload.lensMake = u"{a=b}"_s;
    payload.lensModel = u"[a, b]; \"c\" 'd'"_s;
    payload.location = u"a<=/etc/hostname"_s;
    payload.project = u"東京 #=1+=2-=3"_s;
    payload.notes = u"one\ntwo=\t'three' 🌫\n-Artist=x | `id` $(id)"_s;
    payload.rollName = u"@"_s;
    payload.artist = u"/tmp/*?; Ангел"_s;
    payload.copyright = u"© العربية"_s;
    const fs::path file = jpeg("frame.jpg");
    embed({file}, payload);
    expectAllFound(file, payload);
}

TEST_F(ExiftoolOnJpeg, propertiesHaveTheNamesThatOtherProgramsLookFor)
{
    const fs::path file = jpeg("frame.jpg");
    embed({file}, fullPayload());
    const std::string xmp = xmpText(file);
    EXPECT_THAT(xmp, ContainsRegex("<exif:ISOSpeedRatings>[ \n]*<rdf:Seq>[ \n]*"
                                   "<rdf:li>400</rdf:li>"));
    EXPECT_THAT(xmp, HasSubstr("<aux:LensMake>Optar</aux:LensMake>"));
    EXPECT_THAT(xmp, HasSubstr("xmlns:quillmark='https://quillmark.larkhollow.co/ns/1.0/'"));
    EXPECT_THAT(xmp, HasSubstr("<quillmark:PushPull>-1</quillmark:PushPull>"));
}

TEST_F(ExiftoolOnJpeg, existingKeywordsStay)
{
    SlatePayload payload = minimalPayload();
    const fs::path file = jpeg("frame.jpg");
    embed({file}, payload);
    payload.filmBrand = u"Other"_s;
    embed({file}, payload);
    const QStringList keywords = TagReader(file).values(u"IPTC"_s, u"Keywords"_s);
    EXPECT_THAT(keywords, Contains(u"Brand: Vela"_s));
    EXPECT_THAT(keywords, Contains(u"Brand: Other"_s));
}

TEST_F(ExiftoolOnJpeg, emptyTextRemovesTheTag)
{
    SlatePayload payload = fullPayload();
    const fs::path file = jpeg("frame.jpg");
    embed({file}, payload);
    payload.artist = u""_s;
    embed({file}, payload);
    EXPECT_EQ(TagReader(file).values(u"EXIF"_s, u"Artist"_s), QStringList());
    EXPECT_EQ(TagReader(file).values(u"XMP-quillmark"_s, u"Artist"_s), QStringList());
}

} // namespace
} // namespace quillmark
