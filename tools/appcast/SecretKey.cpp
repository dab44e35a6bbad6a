// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "appcast/SecretKey.h"

#include "base/UniqueFd.h"

#include <fcntl.h>
#include <sodium.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <system_error>

namespace quillmark::tools {
namespace {

static_assert(std::tuple_size_v<SecretKey::Seed> == crypto_sign_ed25519_SEEDBYTES);

void prepare()
{
    if (sodium_init() < 0) {
        throw std::runtime_error("the system gives no random numbers");
    }
}

[[noreturn]] void failWith(const std::filesystem::path &file)
{
    throw std::system_error(errno, std::generic_category(), "cannot write " + file.string());
}

} // namespace

SecretKey SecretKey::make()
{
    prepare();
    Seed seed{};
    randombytes_buf(seed.data(), seed.size());
    SecretKey key = fromSeed(seed);
    sodium_memzero(seed.data(), seed.size());
    return key;
}

SecretKey SecretKey::fromSeed(const Seed &seed)
{
    prepare();
    SecretKey key;
    static_assert(sizeof(key.m_secret) == crypto_sign_ed25519_SECRETKEYBYTES);
    crypto_sign_ed25519_seed_keypair(key.m_public.data(), key.m_secret.data(), seed.data());
    return key;
}

SecretKey SecretKey::load(const std::filesystem::path &file)
{
    std::ifstream in(file, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    const auto seed = QByteArray::fromBase64Encoding(QByteArray::fromStdString(text).trimmed(),
                                                     QByteArray::AbortOnBase64DecodingErrors);
    Seed bytes{};
    if (!in || !seed || (*seed).size() != static_cast<qsizetype>(bytes.size())) {
        throw std::runtime_error(file.string() + " holds no secret key");
    }
    std::copy((*seed).begin(), (*seed).end(), bytes.begin());
    return fromSeed(bytes);
}

SecretKey::~SecretKey()
{
    sodium_memzero(m_secret.data(), m_secret.size());
}

void SecretKey::save(const std::filesystem::path &file) const
{
    const UniqueFd out(::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
    if (!out) {
        failWith(file);
    }
    // The secret begins with the seed that it was made from.
    const QByteArray text = toBase64(std::span(m_secret).first<32>()) + '\n';
    if (::write(out.get(), text.constData(), static_cast<std::size_t>(text.size())) !=
            text.size() ||
        ::fsync(out.get()) != 0) {
        failWith(file);
    }
}

Signature SecretKey::sign(std::span<const std::byte> bytes) const
{
    Signature signature{};
    crypto_sign_ed25519_detached(signature.data(), nullptr,
                                 reinterpret_cast<const unsigned char *>(bytes.data()),
                                 bytes.size(), m_secret.data());
    return signature;
}

QByteArray toBase64(std::span<const unsigned char> bytes)
{
    return QByteArray(reinterpret_cast<const char *>(bytes.data()),
                      static_cast<qsizetype>(bytes.size()))
        .toBase64();
}

std::span<const std::byte> bytesOf(const QByteArray &text)
{
    return std::as_bytes(std::span(text.constData(), static_cast<std::size_t>(text.size())));
}

} // namespace quillmark::tools
