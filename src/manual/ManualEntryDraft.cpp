// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "manual/ManualEntryDraft.h"

#include "base/Trim.h"

#include <QUuid>

#include <algorithm>

namespace quillmark {
namespace {

constexpr qint64 payloadVersion = 2;

/// An optional sign and ASCII digits, nothing else, within 64 bits.
std::optional<qint64> parsedInteger(const QString &text)
{
    const QString trimmed = withoutOuterWhiteSpace(text);
    const bool isSigned = trimmed.startsWith(u'+') || trimmed.startsWith(u'-');
    const QStringView digits = QStringView(trimmed).sliced(isSigned ? 1 : 0);
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    bool fits = false;
    const qint64 number = trimmed.toLongLong(&fits);
    if (digits.isEmpty() || !std::all_of(digits.begin(), digits.end(), isDigit) || !fits) {
        return std::nullopt;
    }
    return number;
}

std::optional<QString> optionalTrimmed(const QString &text)
{
    QString trimmed = withoutOuterWhiteSpace(text);
    if (trimmed.isEmpty()) {
        return std::nullopt;
    }
    return trimmed;
}

QString textOf(const std::optional<QString> &value)
{
    return value.value_or(QString());
}

QString textOf(const std::optional<qint64> &value)
{
    return value ? QString::number(*value) : QString();
}

/// The day in UTC, not the user's: the same moment gives the same text everywhere.
QString isoDate(const QDateTime &moment)
{
    return moment.toUTC().date().toString(u"yyyy-MM-dd");
}

} // namespace

QString ManualEntryError::description() const
{
    return QString::fromUtf8(what());
}

const char *ManualEntryError::what() const noexcept
{
    return "Camera make, camera model, film brand, film stock, and ISO are required.";
}

ManualEntryDraft::ManualEntryDraft(QObject *parent)
    : QObject(parent), m_date(QDateTime::currentDateTime())
{}

bool ManualEntryDraft::isValid() const
{
    const auto isFilled = [](const QString &text) { return optionalTrimmed(text).has_value(); };
    return isFilled(m_cameraMake) && isFilled(m_cameraModel) && isFilled(m_filmBrand) &&
           isFilled(m_filmStock) && parsedInteger(m_iso).has_value();
}

void ManualEntryDraft::prefill(const SlatePayload &from)
{
    setCameraMake(from.cameraMake);
    setCameraModel(from.cameraModel);
    setFilmBrand(from.filmBrand);
    setFilmStock(from.filmStock);
    setIso(QString::number(from.iso));
    setLensMake(textOf(from.lensMake));
    setLensModel(textOf(from.lensModel));
    setFocalLength(textOf(from.focalLength));
    setPushPull(textOf(from.pushPull));
    setLocation(textOf(from.location));
    setProject(textOf(from.project));
    setNotes(textOf(from.notes));
    setRollName(textOf(from.rollName));
    setArtist(textOf(from.artist));
    setCopyright(textOf(from.copyright));
    setIncludeDate(false);
    setDate(QDateTime::currentDateTime());
}

SlatePayload ManualEntryDraft::toPayload(const QString &generatorVersion) const
{
    if (!isValid()) {
        throw ManualEntryError();
    }
    SlatePayload payload;
    payload.version = payloadVersion;
    payload.sessionId =
        QStringLiteral("manual-") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    payload.cameraMake = withoutOuterWhiteSpace(m_cameraMake);
    payload.cameraModel = withoutOuterWhiteSpace(m_cameraModel);
    payload.filmBrand = withoutOuterWhiteSpace(m_filmBrand);
    payload.filmStock = withoutOuterWhiteSpace(m_filmStock);
    payload.iso = parsedInteger(m_iso).value();
    payload.lensMake = optionalTrimmed(m_lensMake);
    payload.lensModel = optionalTrimmed(m_lensModel);
    payload.focalLength = parsedInteger(m_focalLength);
    payload.pushPull = parsedInteger(m_pushPull);
    payload.location = optionalTrimmed(m_location);
    payload.project = optionalTrimmed(m_project);
    payload.notes = optionalTrimmed(m_notes);
    if (m_includeDate) {
        payload.date = isoDate(m_date);
    }
    payload.rollName = optionalTrimmed(m_rollName);
    payload.artist = optionalTrimmed(m_artist);
    payload.copyright = optionalTrimmed(m_copyright);
    payload.appVersion = generatorVersion;
    return payload;
}

} // namespace quillmark
