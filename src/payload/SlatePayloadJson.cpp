// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "payload/SlatePayloadJson.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QRegularExpression>

#include <limits>

namespace quillmark {
namespace {

constexpr qint64 acceptedVersion = 2;

/// Visits every field with its key, in the payload's order. Works for reading (a mutable
/// payload) and writing (a const one), so that the names stand in one place.
template <typename Payload, typename Visitor>
void visitFields(Payload &payload, Visitor &&visit)
{
    visit(u"version", payload.version);
    visit(u"session_id", payload.sessionId);
    visit(u"camera_make", payload.cameraMake);
    visit(u"camera_model", payload.cameraModel);
    visit(u"film_brand", payload.filmBrand);
    visit(u"film_stock", payload.filmStock);
    visit(u"iso", payload.iso);
    visit(u"lens_make", payload.lensMake);
    visit(u"lens_model", payload.lensModel);
    visit(u"focal_length", payload.focalLength);
    visit(u"push_pull", payload.pushPull);
    visit(u"location", payload.location);
    visit(u"project", payload.project);
    visit(u"notes", payload.notes);
    visit(u"date", payload.date);
    visit(u"roll_name", payload.rollName);
    visit(u"artist", payload.artist);
    visit(u"copyright", payload.copyright);
    visit(u"app_version", payload.appVersion);
}

/// Whether the text is made of JSON's tokens (RFC 8259, sections 2 and 6 to 8). The parser
/// judges how they are put together, but lets pass numbers such as "4.", unknown escapes,
/// control characters in strings, and a byte order mark (which becomes no part of the text).
bool isMadeOfJsonTokens(const QByteArray &utf8, const QString &text)
{
    if (utf8.startsWith("\xEF\xBB\xBF")) {
        return false;
    }
    static const QRegularExpression tokens(QStringLiteral(
        R"(\A(?:[ \t\n\r{}\[\]:,]|true|false|null)"
        R"(|"(?:[^"\\\x00-\x1F]|\\(?:["\\/bfnrt]|u[0-9A-Fa-f]{4}))*+")"
        R"(|-?(?:0|[1-9][0-9]*+)(?:\.[0-9]++)?(?:[eE][+-]?[0-9]++)?+(?![0-9.eE+-]))*+\z)"));
    return tokens.match(text).hasMatch();
}

/// For text that is made of JSON's tokens, where U+FEFF stands inside of strings only: the parser
/// takes one at the beginning of a string for a byte order mark, and leaves it out.
QByteArray withByteOrderMarksEscaped(QByteArray utf8)
{
    return utf8.replace("\xEF\xBB\xBF", "\\ufeff");
}

/// Reads the fields of one JSON object; throws for the first that is not as it must be.
class FieldReader
{
public:
    FieldReader(const QJsonObject &object, const QByteArray &utf8) : m_object(object), m_utf8(utf8)
    {}

    template <typename Value>
    void operator()(QStringView key, Value &field) const
    {
        read(m_object.value(key), field);
    }

    template <typename Value>
    void operator()(QStringView key, std::optional<Value> &field) const
    {
        const QJsonValue value = m_object.value(key);
        if (value.isUndefined() || value.isNull()) {
            field.reset();
        } else {
            read(value, field.emplace());
        }
    }

private:
    [[noreturn]] void fail() const
    {
        throw SlateDecodeError::missingFields(QString::fromUtf8(m_utf8));
    }

    void read(const QJsonValue &value, QString &field) const
    {
        // An escape such as \ud800 on its own parses, but is no Unicode text.
        if (!value.isString() || !value.toString().isValidUtf16()) {
            fail();
        }
        field = value.toString();
    }

    void read(const QJsonValue &value, qint64 &field) const
    {
        constexpr qint64 lowest = std::numeric_limits<qint64>::min();
        // toInteger() gives its argument for everything that is no whole number of 64 bits.
        const qint64 number = value.toInteger(0);
        if (!value.isDouble() || number != value.toInteger(1)) {
            fail();
        }
        // Numbers just below the range come out as its lowest.
        static const QRegularExpression lowestInFull(QString::number(lowest) +
                                                     QStringLiteral("(?![0-9.eE])"));
        if (number == lowest && !QString::fromUtf8(m_utf8).contains(lowestInFull)) {
            fail();
        }
        field = number;
    }

    const QJsonObject &m_object;
    const QByteArray &m_utf8;
};

class FieldWriter
{
public:
    explicit FieldWriter(QJsonObject &object) : m_object(object) {}

    template <typename Value>
    void operator()(QStringView key, const Value &field) const
    {
        m_object.insert(key, QJsonValue(field));
    }

    template <typename Value>
    void operator()(QStringView key, const std::optional<Value> &field) const
    {
        if (field) {
            (*this)(key, *field);
        }
    }

private:
    QJsonObject &m_object;
};

} // namespace

SlateDecodeError::SlateDecodeError(Case which, const QString &description)
    : m_case(which), m_description(description), m_what(description.toUtf8())
{}

SlateDecodeError SlateDecodeError::missingFields(const QString &text)
{
    return {Case::missingFields, QStringLiteral("QR JSON is missing required fields: ") + text};
}

SlateDecodeError SlateDecodeError::versionMismatch(qint64 version)
{
    return {Case::versionMismatch,
            QStringLiteral("Unknown Quillmark payload version: ") + QString::number(version)};
}

SlateDecodeError SlateDecodeError::notJSON()
{
    return {Case::notJSON, QStringLiteral("QR contents are not valid JSON.")};
}

SlatePayload slatePayloadFromJson(const QByteArray &utf8)
{
    const QString text = QString::fromUtf8(utf8);
    if (!isMadeOfJsonTokens(utf8, text)) {
        throw SlateDecodeError::missingFields(text);
    }
    const QJsonDocument document = QJsonDocument::fromJson(withByteOrderMarksEscaped(utf8));
    if (!document.isObject()) {
        throw SlateDecodeError::missingFields(text);
    }
    SlatePayload payload;
    const QJsonObject object = document.object();
    visitFields(payload, FieldReader(object, utf8));
    return payload;
}

QByteArray slatePayloadToJson(const SlatePayload &payload)
{
    QJsonObject object; // keeps its keys sorted
    visitFields(payload, FieldWriter(object));
    // Outside of texts compact JSON has no slash, so each can be escaped where it stands.
    return QJsonDocument(object).toJson(QJsonDocument::Compact).replace("/", "\\/");
}

SlatePayload decodeSlatePayload(const QString &qrText)
{
    if (!qrText.isValidUtf16()) {
        throw SlateDecodeError::notJSON();
    }
    SlatePayload payload;
    try {
        payload = slatePayloadFromJson(qrText.toUtf8());
    } catch (const SlateDecodeError &) {
        // The text as it came: on the way through bytes it may lose a byte order mark.
        throw SlateDecodeError::missingFields(qrText);
    }
    if (payload.version != acceptedVersion) {
        throw SlateDecodeError::versionMismatch(payload.version);
    }
    return payload;
}

} // namespace quillmark
