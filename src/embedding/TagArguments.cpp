// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "embedding/Exiftool.h"

#include "payload/SlatePayloadJson.h"

#include <QLatin1StringView>

namespace quillmark {
namespace {

using namespace Qt::StringLiterals;

/// A tag and the value to assign to it; no value, no assignment. (An empty value is one:
/// exiftool then removes the tag.)
struct Assignment {
    QLatin1StringView tag;
    std::optional<QString> value;
};

std::optional<QString> decimal(const std::optional<qint64> &number)
{
    return number ? std::optional(QString::number(*number)) : std::nullopt;
}

/// EXIF has no date without a time of day (EXIF 2.32, DateTimeOriginal): it is always noon.
std::optional<QString> exifDate(std::optional<QString> date)
{
    if (date) {
        date->replace(u'-', u':');
        date->append(" 12:00:00"_L1);
    }
    return date;
}

QString pushPullKeyword(qint64 stops)
{
    if (stops == 0) {
        return u"Box speed"_s;
    }
    return (stops > 0 ? "Push +"_L1 : "Pull "_L1) + QString::number(stops);
}

/// The payload as JSON, or nothing where that is not text. It goes into XMP, and XML has no
/// U+FFFE and U+FFFF (XML 1.0, section 2.2), which exiftool would replace: they are escaped, as
/// the control characters are, so that the payload can be read back as it was.
std::optional<QString> encodeRawPayload(const SlatePayload &payload)
{
    const QByteArray json = slatePayloadToJson(payload);
    if (!json.isValidUtf8()) {
        return std::nullopt;
    }
    return QString::fromUtf8(json)
        .replace(QChar(u'\uFFFE'), u"\\ufffe"_s)
        .replace(QChar(u'\uFFFF'), u"\\uffff"_s);
}

std::vector<Assignment> standardTags(const SlatePayload &payload)
{
    const QString iso = QString::number(payload.iso);
    const std::optional<QString> focalLength = decimal(payload.focalLength);
    const std::optional<QString> noon = exifDate(payload.date);
    return {
        {"EXIF:Make"_L1, payload.cameraMake},
        {"XMP-tiff:Make"_L1, payload.cameraMake},
        {"EXIF:Model"_L1, payload.cameraModel},
        {"XMP-tiff:Model"_L1, payload.cameraModel},
        {"EXIF:ISO"_L1, iso},
        {"XMP-exif:ISOSpeedRatings"_L1, iso},
        {"EXIF:LensMake"_L1, payload.lensMake},
        {"XMP-aux:LensMake"_L1, payload.lensMake},
        {"EXIF:LensModel"_L1, payload.lensModel},
        {"XMP-aux:Lens"_L1, payload.lensModel},
        {"EXIF:FocalLength"_L1, focalLength},
        {"EXIF:FocalLengthIn35mmFormat"_L1, focalLength},
        {"EXIF:DateTimeOriginal"_L1, noon},
        {"EXIF:CreateDate"_L1, noon},
        {"XMP-xmp:CreateDate"_L1, payload.date},
        {"IPTC:City"_L1, payload.location},
        {"IPTC:Sub-location"_L1, payload.location},
        {"XMP-iptcCore:Location"_L1, payload.location},
        {"IPTC:OriginalTransmissionReference"_L1, payload.project},
        {"XMP-photoshop:TransmissionReference"_L1, payload.project},
        {"IPTC:Caption-Abstract"_L1, payload.notes},
        {"XMP-dc:Description"_L1, payload.notes},
        {"EXIF:Artist"_L1, payload.artist},
        {"XMP-dc:Creator"_L1, payload.artist},
        {"IPTC:By-line"_L1, payload.artist},
        {"EXIF:Copyright"_L1, payload.copyright},
        {"XMP-dc:Rights"_L1, payload.copyright},
        {"IPTC:CopyrightNotice"_L1, payload.copyright},
    };
}

QStringList keywords(const SlatePayload &payload)
{
    QStringList list{
        "Brand: "_L1 + payload.filmBrand,
        "Film: "_L1 + payload.fullFilmName(),
        "Film Stock: "_L1 + payload.filmStock,
        "ISO "_L1 + QString::number(payload.iso),
    };
    if (payload.pushPull.value_or(0) != 0) {
        list << pushPullKeyword(*payload.pushPull);
    }
    if (payload.project) {
        list << "Project: "_L1 + *payload.project;
    }
    if (payload.rollName) {
        list << "Roll: "_L1 + *payload.rollName;
    }
    if (payload.focalLength) {
        list << QString::number(*payload.focalLength) + "mm"_L1;
    }
    return list;
}

std::vector<Assignment> privateTags(const SlatePayload &payload, const QString &generatorVersion)
{
    return {
        {"XMP-quillmark:Version"_L1, QString::number(payload.version)},
        {"XMP-quillmark:SessionId"_L1, payload.sessionId},
        {"XMP-quillmark:CameraMake"_L1, payload.cameraMake},
        {"XMP-quillmark:CameraModel"_L1, payload.cameraModel},
        {"XMP-quillmark:FilmBrand"_L1, payload.filmBrand},
        {"XMP-quillmark:FilmStock"_L1, payload.filmStock},
        {"XMP-quillmark:Iso"_L1, QString::number(payload.iso)},
        {"XMP-quillmark:LensMake"_L1, payload.lensMake},
        {"XMP-quillmark:LensModel"_L1, payload.lensModel},
        {"XMP-quillmark:FocalLength"_L1, decimal(payload.focalLength)},
        {"XMP-quillmark:PushPull"_L1, decimal(payload.pushPull)},
        {"XMP-quillmark:Location"_L1, payload.location},
        {"XMP-quillmark:Project"_L1, payload.project},
        {"XMP-quillmark:Notes"_L1, payload.notes},
        {"XMP-quillmark:Date"_L1, payload.date},
        {"XMP-quillmark:RollName"_L1, payload.rollName},
        {"XMP-quillmark:Artist"_L1, payload.artist},
        {"XMP-quillmark:Copyright"_L1, payload.copyright},
        {"XMP-quillmark:AppVersion"_L1, payload.appVersion},
        {"XMP-quillmark:GeneratorVersion"_L1, generatorVersion},
        {"XMP-quillmark:RawPayload"_L1, encodeRawPayload(payload)},
    };
}

void append(QStringList &arguments, const std::vector<Assignment> &assignments)
{
    for (const Assignment &assignment : assignments) {
        if (assignment.value) {
            arguments << "-"_L1 + assignment.tag + "="_L1 + *assignment.value;
        }
    }
}

} // namespace

QStringList Exiftool::tagArguments(const SlatePayload &payload, const QString &generatorVersion)
{
    QStringList arguments;
    append(arguments, standardTags(payload));
    for (const QString &keyword : keywords(payload)) {
        arguments << "-IPTC:Keywords+="_L1 + keyword << "-XMP-dc:Subject+="_L1 + keyword;
    }
    append(arguments, privateTags(payload, generatorVersion));
    return arguments;
}

} // namespace quillmark
