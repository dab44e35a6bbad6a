// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/Described.h"

#include <QByteArray>
#include <QString>

#include <exception>

namespace quillmark {

/// Why an update could not be looked for, fetched or handed over.
class UpdateError : public std::exception, public Described
{
public:
    enum class Case {
        insecureAddress,            ///< neither HTTPS nor this machine; the address
        unreachable,                ///< no connection; what the network says
        untrustedServer,            ///< its certificate is not accepted; why
        timedOut,                   ///< it says nothing
        tooSlow,                    ///< it says too little in too long a time
        badStatus,                  ///< an answer other than 200; the status
        tooManyRedirects,           ///< more than two
        insecureRedirect,           ///< one that leaves HTTPS
        truncated,                  ///< the connection broke off
        tooLarge,                   ///< more bytes than are taken
        malformedFeed,              ///< no feed; what is wrong with it
        feedUnsigned,               ///< there is no signature beside it
        feedSignatureUnreadable,    ///< what is beside it is no signature
        feedForged,                 ///< the signature is not the publisher's for these bytes
        feedUndated,                ///< it does not say when it was made
        feedReplayed,               ///< a newer one has been seen
        packageUnsigned,            ///< the feed has no signature for it; the version
        packageSignatureUnreadable, ///< what the feed has is no signature; the version
        packageUnusable,            ///< no kind of package that is opened here; its file name
        packageTooLarge,            ///< announced with more bytes than are fetched; the version
        packageSizeWrong,           ///< not as long as the feed says
        packageForged,              ///< the signature is not the publisher's for these bytes
        cannotStore,                ///< the file system refuses it; why
        noInstaller,                ///< no program of the desktop opens it
    };

    /// The detail is what the case says after its semicolon. It is shown as it is, on one line
    /// and cut short.
    explicit UpdateError(Case which, const QString &detail = {});

    Case which() const { return m_case; }
    /// As it is shown.
    const QString &detail() const { return m_detail; }
    QString description() const override { return m_description; }
    const char *what() const noexcept override { return m_what.constData(); }

private:
    Case m_case;
    QString m_detail;
    QString m_description;
    QByteArray m_what;
};

} // namespace quillmark
