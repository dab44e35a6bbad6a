// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/Samples.h"

namespace quillmark::test {

SlatePayload minimalPayload()
{
    SlatePayload payload;
    payload.version = 2;
    payload.sessionId = QStringLiteral("a1b2");
    payload.cameraMake = QStringLiteral("Kestrel");
    payload.cameraModel = QStringLiteral("K2");
    payload.filmBrand = QStringLiteral("Vela");
    payload.filmStock = QStringLiteral("Nova 400");
    payload.iso = 400;
    return payload;
}

SlatePayload fullPayload()
{
    SlatePayload payload = minimalPayload();
    payload.sessionId = QStringLiteral("7c9e6679-7425-40de-944b-e07fc1f90ae7");
    payload.lensMake = QStringLiteral("Optar");
    payload.lensModel = QStringLiteral("50mm f/2");
    payload.focalLength = 50;
    payload.pushPull = -1;
    payload.location = QStringLiteral("Grünerløkka, Oslo");
    payload.project = QStringLiteral("Nordlys / 夜明け");
    payload.notes = QStringLiteral("Fog at dawn; \"first light\" = 5:40 🌫");
    payload.date = QStringLiteral("2026-05-01");
    payload.rollName = QStringLiteral("Roll 12");
    payload.artist = QStringLiteral("Zoë Ångström");
    payload.copyright = QStringLiteral("© 2026 Zoë Ångström");
    payload.appVersion = QStringLiteral("slate-web@1.4.2");
    return payload;
}

} // namespace quillmark::test
