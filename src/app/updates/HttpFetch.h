// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/updates/UpdateError.h"

#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <functional>

class QNetworkAccessManager;

namespace quillmark {

/// What is taken from a server, and how patiently.
struct FetchLimits {
    qint64 bytes = 0;                   ///< at most; one more and the fetch fails
    std::chrono::milliseconds window{}; ///< the time in which something has to come
    qint64 windowBytes = 1;             ///< how much of it, once the answer has begun
    std::chrono::milliseconds whole{};  ///< for everything, redirects included
};

/// How often a server may send a request on.
inline constexpr int mostRedirects = 2;

/// Fetches one file by HTTP GET. Only from addresses that isSafeAddress() accepts; redirects
/// from HTTPS stay on it. No cookies, no cache, no credentials, no decompression: the bytes
/// that are handed on are those that count against the limits. The main thread.
class HttpFetch : public QObject
{
    Q_OBJECT

public:
    /// Gets the file's bytes as they come; may throw UpdateError, which ends the fetch.
    using Sink = std::function<void(const QByteArray &)>;

    /// A fetch without its network access manager can only be destroyed.
    HttpFetch(QNetworkAccessManager &network, const FetchLimits &limits, Sink sink,
              QObject *parent = nullptr);
    /// Ends a fetch without a word.
    ~HttpFetch() override;
    Q_DISABLE_COPY_MOVE(HttpFetch)

    /// Once. Ends with exactly one of finished() and failed(), from the event loop.
    void start(const QUrl &address);

Q_SIGNALS:
    /// So many bytes have come, of so many; -1 where the server does not tell.
    void progressed(qint64 received, qint64 expected);
    void finished();
    void failed(const quillmark::UpdateError &error);

private:
    void request(const QUrl &address);
    void takeHeaders();
    void takeRedirect(int status);
    void takeBytes();
    void takeEnd();
    void takeWindowEnd();
    UpdateError networkError() const;
    void fail(const UpdateError &error);
    void end();
    void dropReply();

    QNetworkAccessManager &m_network;
    const FetchLimits m_limits;
    const Sink m_sink;
    QPointer<QNetworkReply> m_reply; ///< goes with the manager at the latest
    QTimer m_window;
    QTimer m_whole;
    QString m_distrust;
    int m_redirects = 0;
    bool m_answered = false;
    qint64 m_expected = -1;
    qint64 m_received = 0;
    qint64 m_windowStart = 0;
};

} // namespace quillmark
