// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/Described.h"
#include "payload/SlatePayload.h"

#include <QByteArray>
#include <QString>

#include <exception>

namespace quillmark {

/// Why a text is not a slate.
class SlateDecodeError : public std::exception, public Described
{
public:
    enum class Case {
        missingFields,   ///< not JSON, not an object, or a field is missing or of a wrong type
        versionMismatch, ///< a whole payload of another version
        notJSON,         ///< the text cannot be written as UTF-8
    };

    static SlateDecodeError missingFields(const QString &text);
    static SlateDecodeError versionMismatch(qint64 version);
    static SlateDecodeError notJSON();

    Case which() const { return m_case; }
    QString description() const override { return m_description; }
    const char *what() const noexcept override { return m_what.constData(); }

private:
    SlateDecodeError(Case which, const QString &description);

    Case m_case;
    QString m_description;
    QByteArray m_what;
};

/// Reads a payload from a JSON object. The seven required fields must be there and of
/// their types; unknown keys are ignored; a null is an absent field; the version is not
/// judged. Integers written with a fraction of zero or an exponent (400.0, 4e2) count as
/// integers; those outside 64 bits do not.
/// Throws SlateDecodeError (missingFields). Any thread.
SlatePayload slatePayloadFromJson(const QByteArray &utf8);

/// Writes a payload as compact JSON in UTF-8: keys sorted, absent optionals left out,
/// slashes escaped as "\/". Reading it gives an equal payload. Any thread.
QByteArray slatePayloadToJson(const SlatePayload &payload);

/// Turns the text of a QR code into a payload of the accepted version.
/// Throws SlateDecodeError and nothing else. Any thread.
SlatePayload decodeSlatePayload(const QString &qrText);

} // namespace quillmark
