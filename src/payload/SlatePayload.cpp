// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "payload/SlatePayload.h"

#include "base/Trim.h"

namespace quillmark {

using namespace Qt::StringLiterals;

namespace {

QString joinedName(const QString &makerText, const QString &modelText)
{
    const QString maker = withoutOuterSpaces(makerText);
    QString model = withoutOuterSpaces(modelText);
    if (maker.isEmpty()) {
        return model;
    }
    // The space matters: "Kestrel K2" names its maker, "KestrelK2" and "Kestrel" do not.
    if (model.toLower().startsWith(maker.toLower() + u' ')) {
        return model;
    }
    return withoutOuterSpaces(maker + u' ' + model);
}

QString pushPullText(qint64 stops)
{
    return (stops > 0 ? u"+"_s : QString()) + QString::number(stops) + u" stops"_s;
}

} // namespace

QString SlatePayload::fullCameraName() const
{
    return joinedName(cameraMake, cameraModel);
}

QString SlatePayload::fullFilmName() const
{
    return joinedName(filmBrand, filmStock);
}

std::vector<InspectorRow> SlatePayload::inspectorRows() const
{
    std::vector<InspectorRow> rows;
    const auto add = [&rows](QStringView label, const QString &value) {
        rows.push_back({label.toString(), value});
    };
    const auto addIfPresent = [&add](QStringView label, const std::optional<QString> &value) {
        if (value) {
            add(label, *value);
        }
    };

    add(u"CAMERA", fullCameraName());
    add(u"FILM", fullFilmName());
    add(u"ISO", QString::number(iso));
    if (lensModel) {
        add(u"LENS", lensMake ? *lensMake + u' ' + *lensModel : *lensModel);
    } else {
        addIfPresent(u"LENS MAKE", lensMake);
    }
    if (focalLength) {
        add(u"FOCAL", QString::number(*focalLength) + u"mm"_s);
    }
    if (pushPull && *pushPull != 0) {
        add(u"PUSH/PULL", pushPullText(*pushPull));
    }
    addIfPresent(u"LOCATION", location);
    addIfPresent(u"PROJECT", project);
    addIfPresent(u"DATE", date);
    addIfPresent(u"ROLL", rollName);
    addIfPresent(u"NOTES", notes);
    addIfPresent(u"ARTIST", artist);
    addIfPresent(u"\u00A9", copyright);
    add(u"SESSION", sessionId);
    return rows;
}

} // namespace quillmark
