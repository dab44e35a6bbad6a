// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "embedding/Exiftool.h"
#include "payload/SlatePayloadJson.h"
#include "support/Printers.h"
#include "support/Samples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillmark {
namespace {

using namespace Qt::StringLiterals;
using test::fullPayload;
using test::minimalPayload;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

QStringList arguments(const SlatePayload &payload)
{
    return Exiftool::tagArguments(payload, u"quillmark-macos@0.0.0"_s);
}

/// The arguments that hold a text, in their order.
QStringList argumentsWith(const SlatePayload &payload, const QString &text)
{
    return arguments(payload).filter(text);
}

TEST(TagArguments, requiredFieldsAlone)
{
    const QStringList expected{
        u"-EXIF:Make=Kestrel"_s,
        u"-XMP-tiff:Make=Kestrel"_s,
        u"-EXIF:Model=K2"_s,
        u"-XMP-tiff:Model=K2"_s,
        u"-EXIF:ISO=400"_s,
        u"-XMP-exif:ISOSpeedRatings=400"_s,
        u"-IPTC:Keywords+=Brand: Vela"_s,
        u"-XMP-dc:Subject+=Brand: Vela"_s,
        u"-IPTC:Keywords+=Film: Vela Nova 400"_s,
        u"-XMP-dc:Subject+=Film: Vela Nova 400"_s,
        u"-IPTC:Keywords+=Film Stock: Nova 400"_s,
        u"-XMP-dc:Subject+=Film Stock: Nova 400"_s,
        u"-IPTC:Keywords+=ISO 400"_s,
        u"-XMP-dc:Subject+=ISO 400"_s,
        u"-XMP-quillmark:Version=2"_s,
        u"-XMP-quillmark:SessionId=a1b2"_s,
        u"-XMP-quillmark:CameraMake=Kestrel"_s,
        u"-XMP-quillmark:CameraModel=K2"_s,
        u"-XMP-quillmark:FilmBrand=Vela"_s,
        u"-XMP-quillmark:FilmStock=Nova 400"_s,
        u"-XMP-quillmark:Iso=400"_s,
        u"-XMP-quillmark:GeneratorVersion=quillmark-macos@0.0.0"_s,
        u"-XMP-quillmark:RawPayload={\"camera_make\":\"Kestrel\",\"camera_model\":\"K2\","
        "\"film_brand\":\"Vela\",\"film_stock\":\"Nova 400\",\"iso\":400,"
        "\"session_id\":\"a1b2\",\"version\":2}"_s,
    };
    EXPECT_EQ(arguments(minimalPayload()), expected);
}

TEST(TagArguments, everyFieldInItsPlace)
{
    SlatePayload payload = minimalPayload();
    payload.lensMake = u"Optar"_s;
    payload.lensModel = u"50mm f/2"_s;
    payload.focalLength = 50;
    payload.pushPull = 2;
    payload.location = u"Oslo"_s;
    payload.project = u"Nordlys"_s;
    payload.notes = u"Fog"_s;
    payload.date = u"2024-05-01"_s;
    payload.rollName = u"12"_s;
    payload.artist = u"Zoë"_s;
    payload.copyright = u"© Zoë"_s;
    payload.appVersion = u"slate-web@1.4.2"_s;
    const QStringList expected{
        u"-EXIF:Make=Kestrel"_s,
        u"-XMP-tiff:Make=Kestrel"_s,
        u"-EXIF:Model=K2"_s,
        u"-XMP-tiff:Model=K2"_s,
        u"-EXIF:ISO=400"_s,
        u"-XMP-exif:ISOSpeedRatings=400"_s,
        u"-EXIF:LensMake=Optar"_s,
        u"-XMP-aux:LensMake=Optar"_s,
        u"-EXIF:LensModel=50mm f/2"_s,
        u"-XMP-aux:Lens=50mm f/2"_s,
        u"-EXIF:FocalLength=50"_s,
        u"-EXIF:FocalLengthIn35mmFormat=50"_s,
        u"-EXIF:DateTimeOriginal=2024:05:01 12:00:00"_s,
        u"-EXIF:CreateDate=2024:05:01 12:00:00"_s,
        u"-XMP-xmp:CreateDate=2024-05-01"_s,
        u"-IPTC:City=Oslo"_s,
        u"-IPTC:Sub-location=Oslo"_s,
        u"-XMP-iptcCore:Location=Oslo"_s,
        u"-IPTC:OriginalTransmissionReference=Nordlys"_s,
        u"-XMP-photoshop:TransmissionReference=Nordlys"_s,
        u"-IPTC:Caption-Abstract=Fog"_s,
        u"-XMP-dc:Description=Fog"_s,
        u"-EXIF:Artist=Zoë"_s,
        u"-XMP-dc:Creator=Zoë"_s,
        u"-IPTC:By-line=Zoë"_s,
        u"-EXIF:Copyright=© Zoë"_s,
        u"-XMP-dc:Rights=© Zoë"_s,
        u"-IPTC:CopyrightNotice=© Zoë"_s,
        u"-IPTC:Keywords+=Brand: Vela"_s,
        u"-XMP-dc:Subject+=Brand: Vela"_s,
        u"-IPTC:Keywords+=Film: Vela Nova 400"_s,
        u"-XMP-dc:Subject+=Film: Vela Nova 400"_s,
        u"-IPTC:Keywords+=Film Stock: Nova 400"_s,
        u"-XMP-dc:Subject+=Film Stock: Nova 400"_s,
        u"-IPTC:Keywords+=ISO 400"_s,
        u"-XMP-dc:Subject+=ISO 400"_s,
        u"-IPTC:Keywords+=Push +2"_s,
        u"-XMP-dc:Subject+=Push +2"_s,
        u"-IPTC:Keywords+=Project: Nordlys"_s,
        u"-XMP-dc:Subject+=Project: Nordlys"_s,
        u"-IPTC:Keywords+=Roll: 12"_s,
        u"-XMP-dc:Subject+=Roll: 12"_s,
        u"-IPTC:Keywords+=50mm"_s,
        u"-XMP-dc:Subject+=50mm"_s,
        u"-XMP-quillmark:Version=2"_s,
        u"-XMP-quillmark:SessionId=a1b2"_s,
        u"-XMP-quillmark:CameraMake=Kestrel"_s,
        u"-XMP-quillmark:CameraModel=K2"_s,
        u"-XMP-quillmark:FilmBrand=Vela"_s,
        u"-XMP-quillmark:FilmStock=Nova 400"_s,
        u"-XMP-quillmark:Iso=400"_s,
        u"-XMP-quillmark:LensMake=Optar"_s,
        u"-XMP-quillmark:LensModel=50mm f/2"_s,
        u"-XMP-quillmark:FocalLength=50"_s,
        u"-XMP-quillmark:PushPull=2"_s,
        u"-XMP-quillmark:Location=Oslo"_s,
        u"-XMP-quillmark:Project=Nordlys"_s,
        u"-XMP-quillmark:Notes=Fog"_s,
        u"-XMP-quillmark:Date=2024-05-01"_s,
        u"-XMP-quillmark:RollName=12"_s,
        u"-XMP-quillmark:Artist=Zoë"_s,
        u"-XMP-quillmark:Copyright=© Zoë"_s,
        u"-XMP-quillmark:AppVersion=slate-web@1.4.2"_s,
        u"-XMP-quillmark:GeneratorVersion=quillmark-macos@0.0.0"_s,
        u"-XMP-quillmark:RawPayload={\"app_version\":\"slate-web@1.4.2\",\"artist\":\"Zoë\","
        "\"camera_make\":\"Kestrel\",\"camera_model\":\"K2\",\"copyright\":\"© Zoë\","
        "\"date\":\"2024-05-01\",\"film_brand\":\"Vela\",\"film_stock\":\"Nova 400\","
        "\"focal_length\":50,\"iso\":400,\"lens_make\":\"Optar\",\"lens_model\":\"50mm f\\/2\","
        "\"location\":\"Oslo\",\"notes\":\"Fog\",\"project\":\"Nordlys\",\"push_pull\":2,"
        "\"roll_name\":\"12\",\"session_id\":\"a1b2\",\"version\":2}"_s,
    };
    EXPECT_EQ(arguments(payload), expected);
}

TEST(TagArguments, sameListForTheSamePayload)
{
    EXPECT_EQ(arguments(fullPayload()), arguments(fullPayload()));
}

TEST(TagArguments, noPushIsWrittenButIsNoKeyword)
{
    SlatePayload payload = minimalPayload();
    payload.pushPull = 0;
    EXPECT_THAT(argumentsWith(payload, u"PushPull"_s), ElementsAre(u"-XMP-quillmark:PushPull=0"_s));
    EXPECT_THAT(argumentsWith(payload, u"+=Pu"_s), IsEmpty());
    EXPECT_THAT(argumentsWith(payload, u"Box speed"_s), IsEmpty());
}

TEST(TagArguments, pushCarriesItsSign)
{
    SlatePayload payload = minimalPayload();
    payload.pushPull = 1;
    EXPECT_THAT(argumentsWith(payload, u"+=Pu"_s),
                ElementsAre(u"-IPTC:Keywords+=Push +1"_s, u"-XMP-dc:Subject+=Push +1"_s));
    EXPECT_THAT(argumentsWith(payload, u":PushPull="_s),
                ElementsAre(u"-XMP-quillmark:PushPull=1"_s));
}

TEST(TagArguments, pullKeepsItsMinus)
{
    SlatePayload payload = minimalPayload();
    payload.pushPull = -2;
    EXPECT_THAT(argumentsWith(payload, u"+=Pu"_s),
                ElementsAre(u"-IPTC:Keywords+=Pull -2"_s, u"-XMP-dc:Subject+=Pull -2"_s));
    EXPECT_THAT(argumentsWith(payload, u":PushPull="_s),
                ElementsAre(u"-XMP-quillmark:PushPull=-2"_s));
}

TEST(TagArguments, integersArePlainDecimal)
{
    SlatePayload payload = minimalPayload();
    payload.iso = 1'000'000;
    payload.focalLength = -35;
    EXPECT_THAT(argumentsWith(payload, u"000000"_s).mid(0, 4),
                ElementsAre(u"-EXIF:ISO=1000000"_s, u"-XMP-exif:ISOSpeedRatings=1000000"_s,
                            u"-IPTC:Keywords+=ISO 1000000"_s, u"-XMP-dc:Subject+=ISO 1000000"_s));
    EXPECT_THAT(argumentsWith(payload, u"-35mm"_s),
                ElementsAre(u"-IPTC:Keywords+=-35mm"_s, u"-XMP-dc:Subject+=-35mm"_s));
}

TEST(TagArguments, dateWithoutHyphensPassesThrough)
{
    SlatePayload payload = minimalPayload();
    payload.date = u"May 2024"_s;
    EXPECT_THAT(argumentsWith(payload, u"=May"_s),
                ElementsAre(u"-EXIF:DateTimeOriginal=May 2024 12:00:00"_s,
                            u"-EXIF:CreateDate=May 2024 12:00:00"_s,
                            u"-XMP-xmp:CreateDate=May 2024"_s, u"-XMP-quillmark:Date=May 2024"_s));
}

TEST(TagArguments, presentButEmptyTextsAreAssigned)
{
    SlatePayload payload = minimalPayload();
    payload.lensMake = payload.lensModel = payload.location = payload.project = payload.notes =
        payload.date = payload.rollName = payload.artist = payload.copyright = payload.appVersion =
            u""_s;
    QStringList empty;
    for (const QString &argument : arguments(payload)) {
        if (argument.endsWith(u'=') || argument.endsWith(u": ") ||
            argument.endsWith(u"= 12:00:00")) {
            empty << argument;
        }
    }
    const QStringList expected{
        u"-EXIF:LensMake="_s,
        u"-XMP-aux:LensMake="_s,
        u"-EXIF:LensModel="_s,
        u"-XMP-aux:Lens="_s,
        u"-EXIF:DateTimeOriginal= 12:00:00"_s,
        u"-EXIF:CreateDate= 12:00:00"_s,
        u"-XMP-xmp:CreateDate="_s,
        u"-IPTC:City="_s,
        u"-IPTC:Sub-location="_s,
        u"-XMP-iptcCore:Location="_s,
        u"-IPTC:OriginalTransmissionReference="_s,
        u"-XMP-photoshop:TransmissionReference="_s,
        u"-IPTC:Caption-Abstract="_s,
        u"-XMP-dc:Description="_s,
        u"-EXIF:Artist="_s,
        u"-XMP-dc:Creator="_s,
        u"-IPTC:By-line="_s,
        u"-EXIF:Copyright="_s,
        u"-XMP-dc:Rights="_s,
        u"-IPTC:CopyrightNotice="_s,
        u"-IPTC:Keywords+=Project: "_s,
        u"-XMP-dc:Subject+=Project: "_s,
        u"-IPTC:Keywords+=Roll: "_s,
        u"-XMP-dc:Subject+=Roll: "_s,
        u"-XMP-quillmark:LensMake="_s,
        u"-XMP-quillmark:LensModel="_s,
        u"-XMP-quillmark:Location="_s,
        u"-XMP-quillmark:Project="_s,
        u"-XMP-quillmark:Notes="_s,
        u"-XMP-quillmark:Date="_s,
        u"-XMP-quillmark:RollName="_s,
        u"-XMP-quillmark:Artist="_s,
        u"-XMP-quillmark:Copyright="_s,
        u"-XMP-quillmark:AppVersion="_s,
    };
    EXPECT_EQ(empty, expected);
}

TEST(TagArguments, valuesAreVerbatim)
{
    SlatePayload payload = minimalPayload();
    const QString notes = u" a=b \"c\" 'd'\n$e %f \\g <h> \t-i 🌫 "_s;
    payload.notes = notes;
    EXPECT_THAT(arguments(payload).filter(notes),
                ElementsAre(u"-IPTC:Caption-Abstract="_s + notes, u"-XMP-dc:Description="_s + notes,
                            u"-XMP-quillmark:Notes="_s + notes));
}

TEST(TagArguments, rollNameAndAppVersionHaveNoStandardTag)
{
    SlatePayload payload = minimalPayload();
    payload.rollName = u"~roll~"_s;
    payload.appVersion = u"~app~"_s;
    QStringList found = argumentsWith(payload, u"~"_s);
    ASSERT_FALSE(found.isEmpty());
    EXPECT_TRUE(found.takeLast().startsWith(u"-XMP-quillmark:RawPayload="));
    EXPECT_THAT(found,
                ElementsAre(u"-IPTC:Keywords+=Roll: ~roll~"_s, u"-XMP-dc:Subject+=Roll: ~roll~"_s,
                            u"-XMP-quillmark:RollName=~roll~"_s,
                            u"-XMP-quillmark:AppVersion=~app~"_s));
}

TEST(TagArguments, filmNameIsNotDoubledInItsKeyword)
{
    SlatePayload payload = minimalPayload();
    payload.filmStock = u"VELA Nova"_s;
    EXPECT_THAT(argumentsWith(payload, u"+=Film"_s),
                ElementsAre(u"-IPTC:Keywords+=Film: VELA Nova"_s,
                            u"-XMP-dc:Subject+=Film: VELA Nova"_s,
                            u"-IPTC:Keywords+=Film Stock: VELA Nova"_s,
                            u"-XMP-dc:Subject+=Film Stock: VELA Nova"_s));
}

TEST(TagArguments, rawPayloadReadsBackAsThePayload)
{
    const QString raw = arguments(fullPayload()).last();
    const QString prefix = u"-XMP-quillmark:RawPayload="_s;
    ASSERT_TRUE(raw.startsWith(prefix));
    EXPECT_EQ(decodeSlatePayload(raw.mid(prefix.size())), fullPayload());
}

} // namespace
} // namespace quillmark
