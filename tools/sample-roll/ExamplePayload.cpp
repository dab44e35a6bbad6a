// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "ExamplePayload.h"

#include "support/Samples.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace quillmark::tools {

QByteArray examplePayloadJson()
{
    const SlatePayload payload = test::fullPayload();
    const QJsonObject object{
        {QStringLiteral("version"), payload.version},
        {QStringLiteral("session_id"), payload.sessionId},
        {QStringLiteral("camera_make"), payload.cameraMake},
        {QStringLiteral("camera_model"), payload.cameraModel},
        {QStringLiteral("film_brand"), payload.filmBrand},
        {QStringLiteral("film_stock"), payload.filmStock},
        {QStringLiteral("iso"), payload.iso},
        {QStringLiteral("lens_make"), *payload.lensMake},
        {QStringLiteral("lens_model"), *payload.lensModel},
        {QStringLiteral("focal_length"), *payload.focalLength},
        {QStringLiteral("push_pull"), *payload.pushPull},
        {QStringLiteral("location"), *payload.location},
        {QStringLiteral("project"), *payload.project},
        {QStringLiteral("notes"), *payload.notes},
        {QStringLiteral("date"), *payload.date},
        {QStringLiteral("roll_name"), *payload.rollName},
        {QStringLiteral("artist"), *payload.artist},
        {QStringLiteral("copyright"), *payload.copyright},
        {QStringLiteral("app_version"), *payload.appVersion},
    };
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace quillmark::tools
