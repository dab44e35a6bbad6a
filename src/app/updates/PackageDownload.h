// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/updates/Appcast.h"
#include "app/updates/HttpFetch.h"
#include "app/updates/Signature.h"

#include <QCoro/QCoroTask>
#include <QFile>
#include <QObject>
#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace quillmark {

/// The largest package that is fetched, in bytes.
inline constexpr qint64 largestPackage = qint64{1024} * 1024 * 1024;

/// Fetches one package into a folder that only the user can enter, and verifies it there. The
/// folder goes with the download, unless its package was verified and is kept. The main thread;
/// the signature is computed on a worker.
class PackageDownload : public QObject
{
    Q_OBJECT

public:
    /// The limits' number of bytes is the feed's, where that tells one.
    PackageDownload(QNetworkAccessManager &network, AppcastItem item, const PublicKey &key,
                    const FetchLimits &limits, QObject *parent = nullptr);
    ~PackageDownload() override;
    Q_DISABLE_COPY_MOVE(PackageDownload)

    /// Once. Ends with exactly one of verified() and failed(), from the event loop.
    void start();

    /// Removes the folder at once. Nothing but the destructor may be called any more.
    void giveUp() { m_folder.reset(); }
    /// Leaves the folder and the package in it where they are.
    void keep() { m_folder->setAutoRemove(false); }

    /// Below which folder all of them make theirs.
    static QString place();
    /// Removes the packages that were handed over more than a day ago, and those of a program
    /// that crashed.
    static void removeLeftovers();

Q_SIGNALS:
    /// So many bytes are there, of so many; -1 where nobody tells.
    void progressed(qint64 received, qint64 expected);
    /// All of them are there.
    void fetched();
    /// The package is the publisher's.
    void verified(const QString &file);
    void failed(const quillmark::UpdateError &error);

private:
    void makeFile();
    void write(const QByteArray &bytes);
    QCoro::Task<> verify();
    void fail(const UpdateError &error);

    QNetworkAccessManager &m_network;
    const AppcastItem m_item;
    const PublicKey m_key;
    const FetchLimits m_limits;
    std::unique_ptr<QTemporaryDir> m_folder;
    QFile m_file;
    std::unique_ptr<HttpFetch> m_fetch;
};

} // namespace quillmark
