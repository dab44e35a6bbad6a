// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// With the exiftool that is installed: a slate's texts come from outside, and whatever they look
// like, they stand in the file as the text that they are.

#include "embedding/Exiftool.h"

#include "EmbedSupport.h"
#include "TagReader.h"
#include "payload/SlatePayloadJson.h"
#include "support/Printers.h"
#include "support/Samples.h"
#include "support/TempDir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillmark {
namespace {

namespace fs = std::filesystem;
using namespace Qt::StringLiterals;
using test::embed;
using test::ExiftoolOnJpeg;
using test::fullPayload;
using test::TagReader;
using ::testing::Contains;
using ::testing::ElementsAre;

/// A text and what it could be taken for.
struct HostileText {
    const char *title;
    const char16_t *text;
    const char16_t *inXmp = nullptr; ///< what XMP holds of it, where XML has no such characters
};

struct Tag {
    const char *group;
    const char *name;
};

constexpr Tag exifAndIptcTags[] = {
    {"EXIF", "Make"},         {"EXIF", "Model"},
    {"EXIF", "LensMake"},     {"EXIF", "LensModel"},
    {"EXIF", "Artist"},       {"EXIF", "Copyright"},
    {"IPTC", "City"},         {"IPTC", "OriginalTransmissionReference"},
    {"IPTC", "By-line"},      {"IPTC", "CopyrightNotice"},
    {"IPTC", "Sub-location"}, {"IPTC", "Caption-Abstract"},
};

constexpr Tag xmpTags[] = {
    {"XMP-tiff", "Make"},
    {"XMP-tiff", "Model"},
    {"XMP-aux", "LensMake"},
    {"XMP-aux", "Lens"},
    {"XMP-iptcCore", "Location"},
    {"XMP-photoshop", "TransmissionReference"},
    {"XMP-dc", "Description"},
    {"XMP-dc", "Creator"},
    {"XMP-dc", "Rights"},
    {"XMP-quillmark", "SessionId"},
    {"XMP-quillmark", "CameraMake"},
    {"XMP-quillmark", "CameraModel"},
    {"XMP-quillmark", "FilmBrand"},
    {"XMP-quillmark", "FilmStock"},
    {"XMP-quillmark", "LensMake"},
    {"XMP-quillmark", "LensModel"},
    {"XMP-quillmark", "Location"},
    {"XMP-quillmark", "Project"},
    {"XMP-quillmark", "Notes"},
    {"XMP-quillmark", "RollName"},
    {"XMP-quillmark", "Artist"},
    {"XMP-quillmark", "Copyright"},
    {"XMP-quillmark", "AppVersion"},
};

/// A payload that says the same in every field that holds any text.
SlatePayload payloadOf(const QString &text)
{
    SlatePayload payload = fullPayload();
    payload.sessionId = payload.cameraMake = payload.cameraModel = text;
    payload.filmBrand = payload.filmStock = text;
    payload.lensMake = payload.lensModel = payload.location = payload.project = text;
    payload.notes = payload.rollName = payload.artist = payload.copyright = text;
    payload.appVersion = text;
    return payload;
}

QStringList values(const TagReader &tags, const Tag &tag)
{
    return tags.values(QLatin1String(tag.group), QLatin1String(tag.name));
}

SlatePayload rawPayload(const TagReader &tags)
{
    return decodeSlatePayload(tags.values(u"XMP-quillmark"_s, u"RawPayload"_s).value(0));
}

class HostileValue : public ExiftoolOnJpeg, public ::testing::WithParamInterface<HostileText>
{
protected:
    QString text() const { return QString::fromUtf16(GetParam().text); }
    QString inXmp() const
    {
        return GetParam().inXmp ? QString::fromUtf16(GetParam().inXmp) : text();
    }
};

TEST_P(HostileValue, standsInTheFileAsItIs)
{
    const fs::path file = jpeg("frame.jpg");
    m_folder.write("x", "not to be touched");
    embed({file}, payloadOf(text()));

    const TagReader tags(file);
    for (const Tag &tag : exifAndIptcTags) {
        EXPECT_THAT(values(tags, tag), ElementsAre(text())) << tag.group << ':' << tag.name;
    }
    for (const Tag &tag : xmpTags) {
        EXPECT_THAT(values(tags, tag), ElementsAre(inXmp())) << tag.group << ':' << tag.name;
    }
    for (const QString &prefix : {u"Brand: "_s, u"Film Stock: "_s, u"Project: "_s, u"Roll: "_s}) {
        EXPECT_THAT(values(tags, {"IPTC", "Keywords"}), Contains(prefix + text()));
        EXPECT_THAT(values(tags, {"XMP-dc", "Subject"}), Contains(prefix + inXmp()));
    }
    EXPECT_EQ(rawPayload(tags), payloadOf(text()));

    EXPECT_EQ(test::readFile(m_folder / "x"), "not to be touched");
    EXPECT_EQ(std::distance(fs::directory_iterator(m_folder.path()), {}), 2);
}

// No longer than the 32 bytes that IPTC has room for, and without blanks at the end, which EXIF
// readers leave out.
INSTANTIATE_TEST_SUITE_P(
    Exiftool, HostileValue,
    ::testing::Values(
        HostileText{"copyOfATag", u"<Model"}, HostileText{"fromAFile", u"<=/etc/hostname"},
        HostileText{"argumentFile", u"@/etc/passwd"}, HostileText{"option", u"-o x"},
        HostileText{"optionLine", u"x\n-o\nx"}, HostileText{"assignment", u"="},
        HostileText{"addition", u"+=<Model"}, HostileText{"number", u"#"},
        HostileText{"fileFormat", u"%f%d%e"}, HostileText{"tagFormat", u"$Model ${Make} $$"},
        HostileText{"expression", u"${Model;unlink($file)}"}, HostileText{"execute", u"-execute"},
        HostileText{"dash", u"-"}, HostileText{"comment", u"# x"},
        HostileText{"lineBreaks", u"one\ntwo\r\nthree\rfour\n\nfive"},
        HostileText{"blanks", u"  two  blanks\t."},
        HostileText{"markup", u"<b>&lt;&#10;]]><!--?><img src=x>"},
        HostileText{"quotes", u"\"'`\\\\n\\0"}, HostileText{"structure", u"{a=[b,c|]}"},
        HostileText{"list", u"a, b; c,,d"}, HostileText{"shell", u"`id` $(id) | id & id > x"},
        HostileText{"rightToLeft", u"\u05E9\u05DC\u202Eabc\u202C\u2066x\u2069"},
        HostileText{"controls", u"a\u0001b\u0007c\u001Bd\u001Fe\u000Bf\u000Cg", u"a.b.c.d.e.f.g"},
        HostileText{"upperControls", u"a\u007Fb\u0085c\u009Bd"},
        HostileText{"separators", u"a\u2028b\u2029c"}, HostileText{"byteOrderMark", u"a\uFEFFb"},
        HostileText{"objectReplacement", u"a\uFFFCb\uFFFDc"},
        HostileText{"beyondTheBasicPlane", u"\U0001F32B\U0010FFFD"}),
    [](const auto &value) { return std::string(value.param.title); });

TEST_F(ExiftoolOnJpeg, charactersThatNoTextShouldHoldAreInTheRawPayload)
{
    const SlatePayload payload = payloadOf(u"\uFEFFa\uFFFEb\uFFFFc\uFDD0d\U0001FFFE"_s);
    const fs::path file = jpeg("frame.jpg");
    embed({file}, payload);
    EXPECT_EQ(rawPayload(TagReader(file)), payload);
}

TEST_F(ExiftoolOnJpeg, textsTooLongForIptcAreWholeEverywhereElse)
{
    const QString text = u"0123456789"_s.repeated(300);
    const fs::path file = jpeg("frame.jpg");
    embed({file}, payloadOf(text));
    const TagReader tags(file);
    EXPECT_THAT(values(tags, {"IPTC", "City"}), ElementsAre(text.left(32)));
    EXPECT_THAT(values(tags, {"IPTC", "Caption-Abstract"}), ElementsAre(text.left(2000)));
    EXPECT_THAT(values(tags, {"EXIF", "Artist"}), ElementsAre(text));
    for (const Tag &tag : xmpTags) {
        EXPECT_THAT(values(tags, tag), ElementsAre(text)) << tag.group << ':' << tag.name;
    }
    EXPECT_EQ(rawPayload(tags), payloadOf(text));
}

TEST_F(ExiftoolOnJpeg, aTextInPlaceOfADateIsOneWhereTextsAreAllowed)
{
    SlatePayload payload = fullPayload();
    payload.date = u"<DateTimeOriginal"_s;
    const fs::path file = jpeg("frame.jpg");
    embed({file}, payload);
    const TagReader tags(file);
    EXPECT_THAT(values(tags, {"EXIF", "DateTimeOriginal"}), ::testing::IsEmpty());
    EXPECT_THAT(values(tags, {"XMP-quillmark", "Date"}), ElementsAre(*payload.date));
    EXPECT_THAT(values(tags, {"EXIF", "Make"}), ElementsAre(payload.cameraMake));
    EXPECT_EQ(rawPayload(tags), payload);
}

} // namespace
} // namespace quillmark
