// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/HttpFetch.h"

#include "app/updates/UpdateConfiguration.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QSslError>

#include <utility>

namespace quillmark {
namespace {

/// Enough for a fast line between two turns of the event loop.
constexpr qint64 bufferBytes = 262'144;

QNetworkRequest requestFor(const QUrl &address)
{
    QNetworkRequest request(address);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    // A small body can be made to unpack into a huge one.
    request.setRawHeader("Accept-Encoding", "identity");
    request.setHeader(QNetworkRequest::UserAgentHeader,
                      QStringLiteral("Quillmark/") + QCoreApplication::applicationVersion());
    return request;
}

} // namespace

HttpFetch::HttpFetch(QNetworkAccessManager &network, const FetchLimits &limits, Sink sink,
                     QObject *parent)
    : QObject(parent), m_network(network), m_limits(limits), m_sink(std::move(sink))
{
    m_window.setInterval(m_limits.window);
    connect(&m_window, &QTimer::timeout, this, &HttpFetch::takeWindowEnd);
    m_whole.setSingleShot(true);
    m_whole.setInterval(m_limits.whole);
    connect(&m_whole, &QTimer::timeout, this, [this] {
        fail(
            UpdateError(m_received > 0 ? UpdateError::Case::tooSlow : UpdateError::Case::timedOut));
    });
}

HttpFetch::~HttpFetch()
{
    dropReply();
}

void HttpFetch::start(const QUrl &address)
{
    m_whole.start();
    if (isSafeAddress(address)) {
        request(address);
        return;
    }
    fail(UpdateError(UpdateError::Case::insecureAddress, address.toDisplayString()));
}

void HttpFetch::request(const QUrl &address)
{
    m_window.start();
    m_windowStart = m_received;
    dropReply();
    m_reply = m_network.get(requestFor(address));
    m_reply->setReadBufferSize(bufferBytes);
    connect(m_reply.get(), &QNetworkReply::metaDataChanged, this, &HttpFetch::takeHeaders);
    connect(m_reply.get(), &QNetworkReply::readyRead, this, &HttpFetch::takeBytes);
    connect(m_reply.get(), &QNetworkReply::finished, this, &HttpFetch::takeEnd);
    connect(m_reply.get(), &QNetworkReply::sslErrors, this, [this](const QList<QSslError> &errors) {
        m_distrust = errors.isEmpty() ? QString() : errors.first().errorString();
    });
}

void HttpFetch::takeHeaders()
{
    const QVariant told = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    const int status = told.toInt();
    if (m_answered || !told.isValid() || status < 200) {
        return; // nothing new, or only that the answer is to follow
    }
    if (status >= 300 && status < 400) {
        takeRedirect(status);
        return;
    }
    if (status != 200) {
        fail(UpdateError(UpdateError::Case::badStatus, QString::number(status)));
        return;
    }
    m_answered = true;
    const QVariant length = m_reply->header(QNetworkRequest::ContentLengthHeader);
    m_expected = length.isValid() ? length.toLongLong() : -1;
    if (m_expected > m_limits.bytes) {
        fail(UpdateError(UpdateError::Case::tooLarge));
    }
}

void HttpFetch::takeRedirect(int status)
{
    const QUrl from = m_reply->url();
    const QUrl to = m_reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    if (to.isEmpty()) {
        fail(UpdateError(UpdateError::Case::badStatus, QString::number(status)));
        return;
    }
    if (++m_redirects > mostRedirects) {
        fail(UpdateError(UpdateError::Case::tooManyRedirects));
        return;
    }
    const QUrl next = from.resolved(to);
    const bool leavesHttps =
        from.scheme() == QLatin1String("https") && next.scheme() != from.scheme();
    if (!isSafeAddress(next) || leavesHttps) {
        fail(UpdateError(UpdateError::Case::insecureRedirect));
        return;
    }
    request(next);
}

void HttpFetch::takeBytes()
{
    if (!m_answered) {
        return; // what goes with a redirect or a refusal
    }
    const QByteArray bytes = m_reply->readAll();
    m_received += bytes.size();
    if (m_received > m_limits.bytes) {
        fail(UpdateError(UpdateError::Case::tooLarge));
        return;
    }
    try {
        m_sink(bytes);
    } catch (const UpdateError &error) {
        fail(error);
        return;
    }
    Q_EMIT progressed(m_received, m_expected);
}

void HttpFetch::takeEnd()
{
    takeHeaders(); // where the whole answer came at once
    if (!m_reply || !m_reply->isFinished()) {
        return; // over already, or sent on
    }
    if (m_reply->error() != QNetworkReply::NoError) {
        fail(networkError());
        return;
    }
    takeBytes();
    if (!m_reply) {
        return;
    }
    if (!m_answered || (m_expected >= 0 && m_received != m_expected)) {
        fail(UpdateError(UpdateError::Case::truncated));
        return;
    }
    end();
    QMetaObject::invokeMethod(this, &HttpFetch::finished, Qt::QueuedConnection);
}

/// A server that sends a little now and then is not to keep the user waiting for ever.
void HttpFetch::takeWindowEnd()
{
    const qint64 came = m_received - std::exchange(m_windowStart, m_received);
    if (came == 0) {
        fail(UpdateError(UpdateError::Case::timedOut));
    } else if (came < m_limits.windowBytes) {
        fail(UpdateError(UpdateError::Case::tooSlow));
    }
}

UpdateError HttpFetch::networkError() const
{
    switch (m_reply->error()) {
    case QNetworkReply::SslHandshakeFailedError:
        return UpdateError(UpdateError::Case::untrustedServer,
                           m_distrust.isEmpty() ? m_reply->errorString() : m_distrust);
    case QNetworkReply::TimeoutError:
        return UpdateError(UpdateError::Case::timedOut);
    default:
        return m_answered ? UpdateError(UpdateError::Case::truncated)
                          : UpdateError(UpdateError::Case::unreachable, m_reply->errorString());
    }
}

void HttpFetch::fail(const UpdateError &error)
{
    end();
    // Later, so that whoever is told may delete this: it may be in the middle of a signal.
    const auto tell = [this, error] { Q_EMIT failed(error); };
    QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
}

void HttpFetch::end()
{
    m_window.stop();
    m_whole.stop();
    dropReply();
}

void HttpFetch::dropReply()
{
    if (QNetworkReply *reply = std::exchange(m_reply, {})) {
        disconnect(reply, nullptr, this, nullptr);
        // Not at once: it may be in the middle of a signal, and does not expect to be over then.
        const auto giveUp = [reply] {
            reply->abort();
            reply->deleteLater();
        };
        QMetaObject::invokeMethod(reply, giveUp, Qt::QueuedConnection);
    }
}

} // namespace quillmark
