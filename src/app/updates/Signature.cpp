// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/Signature.h"

#include <sodium.h>

#include <algorithm>

namespace quillmark {
namespace {

static_assert(std::tuple_size_v<PublicKey> == crypto_sign_ed25519_PUBLICKEYBYTES);
static_assert(std::tuple_size_v<Signature> == crypto_sign_ed25519_BYTES);

template <typename Bytes>
std::optional<Bytes> fromBase64(const QByteArray &text)
{
    const auto decoded =
        QByteArray::fromBase64Encoding(text.trimmed(), QByteArray::AbortOnBase64DecodingErrors);
    Bytes bytes{};
    if (!decoded || (*decoded).size() != static_cast<qsizetype>(bytes.size())) {
        return std::nullopt;
    }
    std::copy((*decoded).begin(), (*decoded).end(), bytes.begin());
    return bytes;
}

} // namespace

std::optional<PublicKey> publicKeyFromBase64(const QByteArray &text)
{
    return fromBase64<PublicKey>(text);
}

std::optional<Signature> signatureFromBase64(const QByteArray &text)
{
    return fromBase64<Signature>(text);
}

bool isSignedBy(const PublicKey &key, const Signature &signature, std::span<const std::byte> bytes)
{
    // Chooses the fastest code for this processor; only the first call does anything.
    if (sodium_init() < 0) {
        return false;
    }
    return crypto_sign_ed25519_verify_detached(
               signature.data(), reinterpret_cast<const unsigned char *>(bytes.data()),
               bytes.size(), key.data()) == 0;
}

} // namespace quillmark
