// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "payload/SlatePayloadJson.h"
#include "support/Printers.h"
#include "support/Samples.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>

#include <limits>
#include <stdexcept>

namespace quillmark {
namespace {

using test::fullPayload;
using test::minimalPayload;

constexpr char minimalJson[] =
    R"({"version":2,"session_id":"s","camera_make":"","camera_model":"",)"
    R"("film_brand":"","film_stock":"","iso":400})";

/// The failure that decoding the text ends with.
SlateDecodeError failureOf(const QString &text)
{
    try {
        decodeSlatePayload(text);
    } catch (const SlateDecodeError &error) {
        return error;
    }
    throw std::logic_error("decoding did not fail");
}

/// The minimal document with one key set to a value written as JSON, or removed if empty.
QString documentWith(const QString &key, const QByteArray &json)
{
    QJsonObject object = QJsonDocument::fromJson(minimalJson).object();
    object.remove(key);
    QByteArray text = QJsonDocument(object).toJson(QJsonDocument::Compact);
    if (!json.isEmpty()) {
        text.chop(1);
        text += ",\"" + key.toUtf8() + "\":" + json + "}";
    }
    return QString::fromUtf8(text);
}

TEST(SlatePayloadJson, emptyRequiredTextsAreAccepted)
{
    const SlatePayload payload = decodeSlatePayload(QString::fromUtf8(minimalJson));
    SlatePayload expected;
    expected.version = 2;
    expected.sessionId = QStringLiteral("s");
    expected.cameraMake = expected.cameraModel = QStringLiteral("");
    expected.filmBrand = expected.filmStock = QStringLiteral("");
    expected.iso = 400;
    EXPECT_EQ(payload, expected);
    EXPECT_FALSE(payload.lensModel.has_value());
}

TEST(SlatePayloadJson, everyShapeFailureCarriesTheWholeText)
{
    const QString texts[] = {
        documentWith(QStringLiteral("iso"), "\"400\""),
        documentWith(QStringLiteral("iso"), "400.5"),
        documentWith(QStringLiteral("iso"), "true"),
        documentWith(QStringLiteral("iso"), "null"),
        documentWith(QStringLiteral("iso"), ""),
        documentWith(QStringLiteral("camera_make"), "7"),
        documentWith(QStringLiteral("camera_make"), "null"),
        documentWith(QStringLiteral("film_stock"), ""),
        documentWith(QStringLiteral("session_id"), ""),
        documentWith(QStringLiteral("notes"), "5"),
        documentWith(QStringLiteral("notes"), "[]"),
        documentWith(QStringLiteral("push_pull"), "\"1\""),
        documentWith(QStringLiteral("notes"), R"("\ud800")"),
        documentWith(QStringLiteral("iso"), "9223372036854775808"),
        documentWith(QStringLiteral("iso"), "-9223372036854775809"),
        documentWith(QStringLiteral("iso"), "1e400"),
        documentWith(QStringLiteral("iso"), "400."),
        documentWith(QStringLiteral("iso"), "0400"),
        documentWith(QStringLiteral("iso"), "+400"),
        documentWith(QStringLiteral("iso"), ".4e3"),
        documentWith(QStringLiteral("iso"), "-9223372036854775808.5"),
        documentWith(QStringLiteral("notes"), "\"line\nbreak\""),
        documentWith(QStringLiteral("notes"), R"("\x")"),
        documentWith(QStringLiteral("notes"), "'single'"),
        QChar(0xFEFF) + QString::fromUtf8(minimalJson),
        QString::fromUtf8(minimalJson).chopped(1) + QStringLiteral(",}"),
        QStringLiteral("word"),
        QString(),
        QStringLiteral("[2]"),
        QStringLiteral("2"),
        QString::fromUtf8(minimalJson) + QStringLiteral("{}"),
        QString::fromUtf8(minimalJson).chopped(1),
        QString::fromUtf8(minimalJson).replace(QStringLiteral("iso"), QStringLiteral("ISO")),
    };
    for (const QString &text : texts) {
        const SlateDecodeError error = failureOf(text);
        EXPECT_EQ(error.which(), SlateDecodeError::Case::missingFields) << text.toStdString();
        EXPECT_EQ(error.description(),
                  QStringLiteral("QR JSON is missing required fields: ") + text);
        EXPECT_EQ(QString::fromUtf8(error.what()), error.description());
    }
}

TEST(SlatePayloadJson, anotherVersionIsNamed)
{
    for (const qint64 version : {1, 3, -1, 0}) {
        const SlateDecodeError error =
            failureOf(documentWith(QStringLiteral("version"), QByteArray::number(version)));
        EXPECT_EQ(error.which(), SlateDecodeError::Case::versionMismatch);
        EXPECT_EQ(error.description(),
                  QStringLiteral("Unknown Quillmark payload version: ") + QString::number(version));
    }
}

TEST(SlatePayloadJson, versionIsJudgedOnlyAfterTheWholeObject)
{
    EXPECT_EQ(failureOf(QStringLiteral(R"({"version":1})")).which(),
              SlateDecodeError::Case::missingFields);
}

TEST(SlatePayloadJson, loneSurrogateIsNotJson)
{
    const QString text = QString::fromUtf8(minimalJson) + QChar(0xD800);
    const SlateDecodeError error = failureOf(text);
    EXPECT_EQ(error.which(), SlateDecodeError::Case::notJSON);
    EXPECT_EQ(error.description(), QStringLiteral("QR contents are not valid JSON."));
}

TEST(SlatePayloadJson, integersReachTheLimitsOf64Bits)
{
    constexpr qint64 highest = std::numeric_limits<qint64>::max();
    constexpr qint64 lowest = std::numeric_limits<qint64>::min();
    for (const qint64 number : {highest, lowest, highest - 1, lowest + 1, qint64{0}}) {
        SlatePayload payload = minimalPayload();
        payload.iso = number;
        payload.focalLength = number;
        EXPECT_EQ(slatePayloadFromJson(slatePayloadToJson(payload)), payload);
    }
}

TEST(SlatePayloadJson, wholeNumbersMayBeWrittenWithFractionOrExponent)
{
    for (const char *text : {"400", "400.0", "4e2", "40.0e1"}) {
        EXPECT_EQ(decodeSlatePayload(documentWith(QStringLiteral("iso"), text)).iso, 400);
    }
}

TEST(SlatePayloadJson, nullOptionalIsAbsentAndNotWritten)
{
    const SlatePayload payload =
        decodeSlatePayload(documentWith(QStringLiteral("lens_model"), "null"));
    EXPECT_FALSE(payload.lensModel.has_value());
    EXPECT_FALSE(slatePayloadToJson(payload).contains("lens_model"));
}

TEST(SlatePayloadJson, unknownKeysAreIgnored)
{
    EXPECT_NO_THROW(decodeSlatePayload(documentWith(QStringLiteral("colour"), R"({"a":[1,2]})")));
}

TEST(SlatePayloadJson, valuesAreKeptAsTheyAre)
{
    const SlatePayload payload =
        decodeSlatePayload(documentWith(QStringLiteral("notes"), R"("  \n\u0000x \/ ")"));
    EXPECT_EQ(*payload.notes, QString::fromUtf16(u"  \n\0x / ", 8));
}

TEST(SlatePayloadJson, writtenPayloadReadsBackEqual)
{
    SlatePayload emptyTexts = minimalPayload();
    emptyTexts.notes = QStringLiteral("");
    emptyTexts.pushPull = 0;
    for (const SlatePayload &payload : {minimalPayload(), fullPayload(), emptyTexts}) {
        EXPECT_EQ(slatePayloadFromJson(slatePayloadToJson(payload)), payload);
    }
}

TEST(SlatePayloadJson, textsMayBeginWithWhatLooksLikeAByteOrderMark)
{
    SlatePayload payload = minimalPayload();
    payload.cameraMake = QStringLiteral("\uFEFF\uFEFFa\uFEFF");
    payload.notes = QChar(0xFEFF);
    EXPECT_EQ(slatePayloadFromJson(slatePayloadToJson(payload)), payload);
    EXPECT_EQ(decodeSlatePayload(QString::fromUtf8(slatePayloadToJson(payload))), payload);
    const QByteArray otherKey = QByteArray(minimalJson).replace("\"iso\"", "\"\xEF\xBB\xBFiso\"");
    EXPECT_THROW(slatePayloadFromJson(otherKey), SlateDecodeError);
}

TEST(SlatePayloadJson, isCompactWithSortedKeysAndEscapedSlashes)
{
    SlatePayload payload = minimalPayload();
    payload.notes = QStringLiteral("a/b\\/ü");
    payload.pushPull = 0;
    EXPECT_EQ(slatePayloadToJson(payload),
              QByteArray(R"({"camera_make":"Kestrel","camera_model":"K2","film_brand":"Vela",)"
                         R"("film_stock":"Nova 400","iso":400,"notes":"a\/b\\\/ü","push_pull":0,)"
                         R"("session_id":"a1b2","version":2})"));
}

TEST(SlatePayloadJson, readingAloneDoesNotJudgeTheVersion)
{
    EXPECT_EQ(slatePayloadFromJson(documentWith(QStringLiteral("version"), "7").toUtf8()).version,
              7);
}

} // namespace
} // namespace quillmark
