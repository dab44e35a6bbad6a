// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <array>
#include <cstddef>
#include <optional>
#include <span>

/// Detached Ed25519 signatures (RFC 8032, section 5.1) over the bytes of a file as they are.
namespace quillmark {

/// The point in its 32 bytes.
using PublicKey = std::array<unsigned char, 32>;
/// R and S, 64 bytes.
using Signature = std::array<unsigned char, 64>;

/// Reads a key from base64 (RFC 4648, section 4); nothing where the text, apart from white
/// space around it, is anything else than the base64 of 32 bytes. Any thread.
std::optional<PublicKey> publicKeyFromBase64(const QByteArray &text);

/// The same for the 64 bytes of a signature.
std::optional<Signature> signatureFromBase64(const QByteArray &text);

/// Whether the owner of the key signed exactly these bytes. Any thread.
bool isSignedBy(const PublicKey &key, const Signature &signature, std::span<const std::byte> bytes);

} // namespace quillmark
