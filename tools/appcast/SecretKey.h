// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/updates/Signature.h"

#include <QByteArray>

#include <array>
#include <cstddef>
#include <filesystem>
#include <span>

namespace quillmark::tools {

/// A publisher's key, made from a seed of 32 random bytes (RFC 8032, section 5.1.5). Its memory
/// is wiped when it goes.
class SecretKey
{
public:
    using Seed = std::array<unsigned char, 32>;

    /// A new one from the system's random numbers.
    static SecretKey make();
    static SecretKey fromSeed(const Seed &seed);
    /// From a file that save() wrote. Throws std::runtime_error where it is none.
    static SecretKey load(const std::filesystem::path &file);

    ~SecretKey();
    SecretKey(const SecretKey &) = default;
    SecretKey &operator=(const SecretKey &) = default;

    /// Writes the seed's base64 into a new file that only its owner can read. Throws
    /// std::system_error; a file that is there already is never written over.
    void save(const std::filesystem::path &file) const;

    const PublicKey &publicKey() const { return m_public; }
    Signature sign(std::span<const std::byte> bytes) const;

private:
    SecretKey() = default;

    PublicKey m_public{};
    std::array<unsigned char, 64> m_secret{};
};

/// The base64 of a key or a signature.
QByteArray toBase64(std::span<const unsigned char> bytes);

/// The bytes of a text.
std::span<const std::byte> bytesOf(const QByteArray &text);

} // namespace quillmark::tools
