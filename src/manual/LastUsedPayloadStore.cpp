// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "manual/LastUsedPayloadStore.h"

#include "base/Settings.h"
#include "payload/SlatePayloadJson.h"

namespace quillmark::LastUsedPayloadStore {
namespace {

/// "v2" is the version of the stored form.
QString key()
{
    return QStringLiteral("co.larkhollow.quillmark.lastManualPayload.v2");
}

} // namespace

void save(const SlatePayload &payload)
{
    Settings::store(key(), slatePayloadToJson(payload));
}

std::optional<SlatePayload> load()
{
    const std::optional<QByteArray> stored = Settings::value(key());
    if (!stored) {
        return std::nullopt;
    }
    try {
        return slatePayloadFromJson(*stored);
    } catch (const SlateDecodeError &) {
        return std::nullopt;
    }
}

} // namespace quillmark::LastUsedPayloadStore
