// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "manual/LastUsedPayloadStore.h"

#include "payload/SlatePayloadJson.h"

#include <QSettings>
#include <QVariant>

namespace quillmark::LastUsedPayloadStore {
namespace {

/// "v2" is the version of the stored form.
QString key()
{
    return QStringLiteral("co.larkhollow.quillmark.lastManualPayload.v2");
}

/// The program's own settings, whatever executable the library is linked into.
QSettings settings()
{
    return {QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Larkhollow"),
            QStringLiteral("Quillmark")};
}

} // namespace

void save(const SlatePayload &payload)
{
    QSettings store = settings();
    store.setValue(key(), slatePayloadToJson(payload));
    // At once, not when the event loop finds time: the run that follows may be killed.
    store.sync();
}

std::optional<SlatePayload> load()
{
    const QVariant stored = settings().value(key());
    if (stored.typeId() != QMetaType::QByteArray) {
        return std::nullopt;
    }
    try {
        return slatePayloadFromJson(stored.toByteArray());
    } catch (const SlateDecodeError &) {
        return std::nullopt;
    }
}

} // namespace quillmark::LastUsedPayloadStore
