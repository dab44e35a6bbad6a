// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "manual/ManualEntryError.h"
#include "payload/SlatePayload.h"

#include <QDateTime>
#include <QObject>
#include <QString>

namespace quillmark {

/// The form behind manual entry: every field as the text that was typed, numbers included,
/// plus a switch and a moment for the date. Main thread only.
///
/// A change of any property announces itself with willChange() before and changed() after.
class ManualEntryDraft : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString cameraMake READ cameraMake WRITE setCameraMake NOTIFY changed)
    Q_PROPERTY(QString cameraModel READ cameraModel WRITE setCameraModel NOTIFY changed)
    Q_PROPERTY(QString filmBrand READ filmBrand WRITE setFilmBrand NOTIFY changed)
    Q_PROPERTY(QString filmStock READ filmStock WRITE setFilmStock NOTIFY changed)
    Q_PROPERTY(QString iso READ iso WRITE setIso NOTIFY changed)
    Q_PROPERTY(QString lensMake READ lensMake WRITE setLensMake NOTIFY changed)
    Q_PROPERTY(QString lensModel READ lensModel WRITE setLensModel NOTIFY changed)
    Q_PROPERTY(QString focalLength READ focalLength WRITE setFocalLength NOTIFY changed)
    Q_PROPERTY(QString pushPull READ pushPull WRITE setPushPull NOTIFY changed)
    Q_PROPERTY(QString location READ location WRITE setLocation NOTIFY changed)
    Q_PROPERTY(QString project READ project WRITE setProject NOTIFY changed)
    Q_PROPERTY(QString notes READ notes WRITE setNotes NOTIFY changed)
    Q_PROPERTY(QString rollName READ rollName WRITE setRollName NOTIFY changed)
    Q_PROPERTY(QString artist READ artist WRITE setArtist NOTIFY changed)
    Q_PROPERTY(QString copyright READ copyright WRITE setCopyright NOTIFY changed)
    Q_PROPERTY(bool includeDate READ includeDate WRITE setIncludeDate NOTIFY changed)
    Q_PROPERTY(QDateTime date READ date WRITE setDate NOTIFY changed)
    Q_PROPERTY(bool isValid READ isValid NOTIFY changed)

public:
    explicit ManualEntryDraft(QObject *parent = nullptr);

    QString cameraMake() const { return m_cameraMake; }
    QString cameraModel() const { return m_cameraModel; }
    QString filmBrand() const { return m_filmBrand; }
    QString filmStock() const { return m_filmStock; }
    QString iso() const { return m_iso; }
    QString lensMake() const { return m_lensMake; }
    QString lensModel() const { return m_lensModel; }
    QString focalLength() const { return m_focalLength; }
    QString pushPull() const { return m_pushPull; }
    QString location() const { return m_location; }
    QString project() const { return m_project; }
    QString notes() const { return m_notes; }
    QString rollName() const { return m_rollName; }
    QString artist() const { return m_artist; }
    QString copyright() const { return m_copyright; }
    bool includeDate() const { return m_includeDate; }
    /// The shooting date's moment; its UTC day is what counts, and only with includeDate.
    QDateTime date() const { return m_date; }

    void setCameraMake(const QString &text) { set(m_cameraMake, text); }
    void setCameraModel(const QString &text) { set(m_cameraModel, text); }
    void setFilmBrand(const QString &text) { set(m_filmBrand, text); }
    void setFilmStock(const QString &text) { set(m_filmStock, text); }
    void setIso(const QString &text) { set(m_iso, text); }
    void setLensMake(const QString &text) { set(m_lensMake, text); }
    void setLensModel(const QString &text) { set(m_lensModel, text); }
    void setFocalLength(const QString &text) { set(m_focalLength, text); }
    void setPushPull(const QString &text) { set(m_pushPull, text); }
    void setLocation(const QString &text) { set(m_location, text); }
    void setProject(const QString &text) { set(m_project, text); }
    void setNotes(const QString &text) { set(m_notes, text); }
    void setRollName(const QString &text) { set(m_rollName, text); }
    void setArtist(const QString &text) { set(m_artist, text); }
    void setCopyright(const QString &text) { set(m_copyright, text); }
    void setIncludeDate(bool include) { set(m_includeDate, include); }
    /// An invalid moment changes nothing.
    void setDate(const QDateTime &date)
    {
        if (date.isValid()) {
            set(m_date, date);
        }
    }

    /// Whether toPayload() would succeed: the four names are not blank and the film speed is
    /// a decimal integer of 64 bits.
    bool isValid() const;

    /// Overwrites the form from a payload. Its date is not carried over: the form starts
    /// again without one.
    void prefill(const SlatePayload &from);

    /// The payload that the form describes, under a new session identifier on every call.
    /// Optional numbers that do not parse are absent. Throws ManualEntryError.
    SlatePayload toPayload(const QString &generatorVersion) const;

Q_SIGNALS:
    void willChange();
    void changed();

private:
    template <typename Value>
    void set(Value &field, const Value &value)
    {
        if (field == value) {
            return;
        }
        Q_EMIT willChange();
        field = value;
        Q_EMIT changed();
    }

    QString m_cameraMake;
    QString m_cameraModel;
    QString m_filmBrand;
    QString m_filmStock;
    QString m_iso;
    QString m_lensMake;
    QString m_lensModel;
    QString m_focalLength;
    QString m_pushPull;
    QString m_location;
    QString m_project;
    QString m_notes;
    QString m_rollName;
    QString m_artist;
    QString m_copyright;
    bool m_includeDate = false;
    QDateTime m_date;
};

} // namespace quillmark
