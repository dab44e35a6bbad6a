// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/SlateText.h"

#include "payload/SlatePayloadJson.h"

#include <QStringList>

namespace quillmark::test {
namespace {

QString words(Random &random, int length)
{
    static const QStringList some{
        QStringLiteral("fog"),        QStringLiteral("harbour"), QStringLiteral("Grünerløkka"),
        QStringLiteral("夜明け"),     QStringLiteral("market"),  QStringLiteral("f/2.8"),
        QStringLiteral("first"),      QStringLiteral("light"),   QStringLiteral("expired"),
        QStringLiteral("Ångström"),   QStringLiteral("+1/3"),    QStringLiteral("metered"),
        QStringLiteral("\"candid\""), QStringLiteral("tripod"),  QStringLiteral("rain;"),
    };
    QString text;
    while (text.size() < length) {
        text += some[random.below(static_cast<int>(some.size()))] + u' ';
    }
    return text.left(length).trimmed();
}

QString identifier(Random &random, int digits)
{
    QString text;
    for (int i = 0; i < digits; ++i) {
        text += QString::number(random.below(16), 16);
    }
    return text;
}

} // namespace

QByteArray randomSlateText(Random &random)
{
    SlatePayload payload;
    payload.version = 2;
    payload.sessionId = identifier(random, 8);
    payload.cameraMake = QStringLiteral("Kestrel");
    payload.cameraModel = QStringLiteral("K2");
    payload.filmBrand = QStringLiteral("Vela");
    payload.filmStock = QStringLiteral("Nova 400");
    payload.iso = 100LL * (1 + random.below(16));
    const auto length = static_cast<int>(random.between(170.0F, 700.0F));
    if (length > 220) {
        payload.lensModel = QStringLiteral("50mm f/2");
        payload.focalLength = 50;
    }
    if (length > 300) {
        payload.sessionId = identifier(random, 32);
        payload.artist = words(random, 14);
        payload.date = QStringLiteral("2026-05-%1").arg(10 + random.below(20));
    }
    if (length > 360) {
        payload.location = words(random, 20);
        payload.copyright = words(random, 18);
    }
    int notes = 0;
    QByteArray json = slatePayloadToJson(payload);
    while (json.size() < length) {
        notes += 1 + static_cast<int>(length - json.size()) / 3;
        payload.notes = words(random, notes);
        json = slatePayloadToJson(payload);
    }
    return json;
}

QByteArray randomOtherText(Random &random)
{
    switch (random.below(5)) {
    case 0:
        return "https://example.org/" + identifier(random, 3 + random.below(40)).toLatin1();
    case 1:
        return "WIFI:T:WPA;S:guest-" + identifier(random, 4).toLatin1() +
               ";P:" + identifier(random, 12).toLatin1() + ";;";
    case 2:
        return "BEGIN:VCARD\nVERSION:3.0\nFN:" + words(random, 14).toUtf8() + "\nTEL:+47" +
               QByteArray::number(10'000'000 + random.below(80'000'000)) + "\nEND:VCARD";
    case 3:
        return QByteArray::number(1000 + random.below(900'000'000));
    default:
        return words(random, 8 + random.below(90)).toUtf8();
    }
}

} // namespace quillmark::test
