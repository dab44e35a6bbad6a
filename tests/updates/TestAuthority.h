// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/TempDir.h"

#include <QSslCertificate>
#include <QSslKey>

namespace quillmark::test {

/// A certificate authority that nobody knows, and a server's certificate for 127.0.0.1 and
/// localhost that it signed. Both are valid for two days.
class TestAuthority
{
public:
    /// Throws std::runtime_error where the openssl program does not make them.
    TestAuthority();

    /// Has new connections of this process trust this authority alone, as long as it stands.
    class Trust
    {
    public:
        explicit Trust(const TestAuthority &authority);
        ~Trust();
        Q_DISABLE_COPY_MOVE(Trust)
    };

    const QSslCertificate &certificate() const { return m_certificate; }
    const QSslCertificate &serverCertificate() const { return m_serverCertificate; }
    const QSslKey &serverKey() const { return m_serverKey; }

    /// One for the whole process: making them takes a while.
    static const TestAuthority &shared();

private:
    QSslCertificate m_certificate;
    QSslCertificate m_serverCertificate;
    QSslKey m_serverKey;
};

} // namespace quillmark::test
