// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "fuzz/Target.h"
#include "payload/SlatePayloadJson.h"

#include <cstring>
#include <optional>

namespace quillmark::fuzz {
namespace {

QByteArray toByteArray(Bytes bytes)
{
    return {reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

std::optional<SlatePayload> fromJson(const QByteArray &utf8)
{
    try {
        return slatePayloadFromJson(utf8);
    } catch (const SlateDecodeError &error) {
        require(error.which() == SlateDecodeError::Case::missingFields,
                "JSON is refused for its fields alone");
        require(error.description().endsWith(QString::fromUtf8(utf8)),
                "a refusal tells the whole text");
        return std::nullopt;
    }
}

std::optional<SlatePayload> fromText(const QString &text)
{
    try {
        const SlatePayload payload = decodeSlatePayload(text);
        require(payload.version == 2, "a slate has the version that is accepted");
        return payload;
    } catch (const SlateDecodeError &error) {
        require((error.which() == SlateDecodeError::Case::notJSON) == !text.isValidUtf16(),
                "what is no Unicode is no JSON");
        require(error.which() != SlateDecodeError::Case::missingFields ||
                    error.description().endsWith(text),
                "a refusal tells the whole text");
        return std::nullopt;
    }
}

void readJson(const QByteArray &utf8)
{
    const std::optional<SlatePayload> payload = fromJson(utf8);
    if (!payload) {
        return;
    }
    const QByteArray written = slatePayloadToJson(*payload);
    const std::optional<SlatePayload> again = fromJson(written);
    require(again == payload, "reading what was written gives an equal payload");
    require(slatePayloadToJson(*again) == written, "equal payloads are written alike");
    for (const InspectorRow &row : payload->inspectorRows()) {
        require(!row.label.isEmpty(), "what is shown has a label");
    }
}

void readText(const QString &text)
{
    const std::optional<SlatePayload> payload = fromText(text);
    if (payload) {
        require(fromJson(text.toUtf8()) == payload, "a slate's text is a payload's JSON");
    }
}

/// Once as UTF-8, and once as the UTF-16 of a text that may be none.
void readPayload(Bytes bytes)
{
    const QByteArray utf8 = toByteArray(bytes);
    readJson(utf8);
    readText(QString::fromUtf8(utf8));
    QString text(static_cast<qsizetype>(bytes.size() / sizeof(QChar)), QChar());
    if (!text.isEmpty()) {
        std::memcpy(text.data(), bytes.data(),
                    static_cast<std::size_t>(text.size()) * sizeof(QChar));
    }
    readText(text);
}

} // namespace
} // namespace quillmark::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const quillmark::fuzz::TimeLimit limit;
    quillmark::fuzz::readPayload({data, size});
    return 0;
}
