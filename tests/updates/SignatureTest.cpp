// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/Signature.h"

#include <gtest/gtest.h>

#include <span>

namespace quillmark {
namespace {

/// The second test vector of RFC 8032, section 7.1.
class Rfc8032 : public ::testing::Test
{
protected:
    static QByteArray base64(const char *hexadecimal)
    {
        return QByteArray::fromHex(hexadecimal).toBase64();
    }

    const QByteArray m_keyText =
        base64("3d4017c3e843895a92b70aa74d1b7ebc9c982ccf2ec4968cc0cd55f12af4660c");
    const QByteArray m_signatureText =
        base64("92a009a9f0d4cab8720e820b5f642540a2b27b5416503f8fb3762223ebdb69da"
               "085ac1e43e15996e458f3613d0f11d8c387b2eaeb4302aeeb00d291612bb0c00");
    const PublicKey m_key = publicKeyFromBase64(m_keyText).value();
    const Signature m_signature = signatureFromBase64(m_signatureText).value();
    const QByteArray m_message = QByteArray::fromHex("72");
};

using SignatureTest = Rfc8032;

TEST_F(SignatureTest, isTheOwnersForTheseBytes)
{
    EXPECT_TRUE(isSignedBy(m_key, m_signature, std::as_bytes(std::span(m_message))));
}

TEST_F(SignatureTest, isNobodysForOtherBytes)
{
    for (const QByteArray &other : {QByteArray(), QByteArray("s"), QByteArray("rr")}) {
        EXPECT_FALSE(isSignedBy(m_key, m_signature, std::as_bytes(std::span(other))));
    }
}

TEST_F(SignatureTest, everyBitOfItCounts)
{
    for (std::size_t bit = 0; bit < m_signature.size() * 8; ++bit) {
        Signature changed = m_signature;
        changed.at(bit / 8) ^= static_cast<unsigned char>(1U << (bit % 8));
        EXPECT_FALSE(isSignedBy(m_key, changed, std::as_bytes(std::span(m_message)))) << bit;
    }
}

TEST_F(SignatureTest, isNotOfAnotherKey)
{
    PublicKey other = m_key;
    other[0] ^= 1U;
    EXPECT_FALSE(isSignedBy(other, m_signature, std::as_bytes(std::span(m_message))));
}

TEST_F(SignatureTest, keyOfSmallOrderSignsNothing)
{
    // With the neutral element for a key, R = S = 0 would be a signature of everything.
    PublicKey neutral{1};
    Signature forged{1};
    EXPECT_FALSE(isSignedBy(neutral, forged, std::as_bytes(std::span(m_message))));
}

TEST_F(SignatureTest, textMayHaveWhiteSpaceAround)
{
    EXPECT_EQ(signatureFromBase64('\n' + m_signatureText + "\r\n"), m_signature);
    EXPECT_EQ(publicKeyFromBase64(' ' + m_keyText + '\t'), m_key);
}

TEST_F(SignatureTest, otherTextsAreNone)
{
    QByteArray broken = m_signatureText;
    broken[5] = '!';
    for (const QByteArray &text :
         {QByteArray(), QByteArray("AAAA"), m_keyText, broken, m_signatureText + m_signatureText}) {
        EXPECT_EQ(signatureFromBase64(text), std::nullopt) << text.constData();
    }
    EXPECT_EQ(publicKeyFromBase64(m_signatureText), std::nullopt);
}

} // namespace
} // namespace quillmark
