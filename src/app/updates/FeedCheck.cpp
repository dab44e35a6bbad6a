// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/FeedCheck.h"

#include "app/updates/PackageDownload.h"
#include "app/updates/PackageName.h"

#include <span>
#include <utility>

namespace quillmark {
namespace {

/// A signature in base64 has 88 characters.
constexpr qint64 largestSignature = 1024;

std::span<const std::byte> bytesOf(const QByteArray &bytes)
{
    return std::as_bytes(std::span(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

/// Throws where the offered package could not be used however it arrives.
void inspect(const AppcastItem &item)
{
    if (item.packageSignature.isEmpty()) {
        throw UpdateError(UpdateError::Case::packageUnsigned, item.shortVersion);
    }
    if (!signatureFromBase64(item.packageSignature.toLatin1())) {
        throw UpdateError(UpdateError::Case::packageSignatureUnreadable, item.shortVersion);
    }
    if (!packageFileName(item.package)) {
        throw UpdateError(UpdateError::Case::packageUnusable,
                          item.package.fileName(QUrl::FullyDecoded));
    }
    if (item.packageBytes > largestPackage) {
        throw UpdateError(UpdateError::Case::packageTooLarge, item.shortVersion);
    }
}

} // namespace

QUrl signatureAddress(const QUrl &feed)
{
    QUrl address = feed;
    address.setPath(feed.path(QUrl::FullyEncoded) + QStringLiteral(".sig"), QUrl::TolerantMode);
    return address;
}

FeedAnswer answerFromFeed(const FeedQuestion &question, const QByteArray &feed,
                          const QByteArray &signature)
{
    const auto read = signatureFromBase64(signature);
    if (!read) {
        throw UpdateError(UpdateError::Case::feedSignatureUnreadable);
    }
    if (!isSignedBy(question.configuration.publicKey, *read, bytesOf(feed))) {
        throw UpdateError(UpdateError::Case::feedForged);
    }
    const Appcast appcast = readAppcast(feed);
    // A feed that was once signed stays signed: only its date tells that it was kept back.
    if (!appcast.date) {
        throw UpdateError(UpdateError::Case::feedUndated);
    }
    if (question.newestSeen && *appcast.date < *question.newestSeen) {
        throw UpdateError(UpdateError::Case::feedReplayed);
    }
    auto update = newestUpdate(appcast, question.currentVersion, question.system);
    if (update) {
        inspect(*update);
    }
    return {.update = std::move(update), .feedDate = *appcast.date};
}

FeedCheck::FeedCheck(QNetworkAccessManager &network, FeedQuestion question,
                     const FetchLimits &limits, QObject *parent)
    : QObject(parent), m_network(network), m_question(std::move(question)), m_limits(limits)
{}

void FeedCheck::start()
{
    m_fetch = std::make_unique<HttpFetch>(
        m_network, m_limits, [this](const QByteArray &bytes) { m_feed += bytes; }, this);
    connect(m_fetch.get(), &HttpFetch::finished, this, &FeedCheck::fetchSignature);
    connect(m_fetch.get(), &HttpFetch::failed, this, &FeedCheck::failed);
    m_fetch->start(m_question.configuration.feed);
}

void FeedCheck::fetchSignature()
{
    FetchLimits limits = m_limits;
    limits.bytes = largestSignature;
    m_fetch.release()->deleteLater();
    m_fetch = std::make_unique<HttpFetch>(
        m_network, limits, [this](const QByteArray &bytes) { m_signature += bytes; }, this);
    connect(m_fetch.get(), &HttpFetch::finished, this, &FeedCheck::decide);
    connect(m_fetch.get(), &HttpFetch::failed, this, &FeedCheck::takeSignatureError);
    m_fetch->start(signatureAddress(m_question.configuration.feed));
}

void FeedCheck::takeSignatureError(const UpdateError &error)
{
    // A server that is in trouble says nothing about whether there is a signature.
    const bool isMissing =
        error.which() == UpdateError::Case::badStatus &&
        (error.detail() == QLatin1String("404") || error.detail() == QLatin1String("410"));
    Q_EMIT failed(isMissing ? UpdateError(UpdateError::Case::feedUnsigned)
                  : error.which() == UpdateError::Case::tooLarge
                      ? UpdateError(UpdateError::Case::feedSignatureUnreadable)
                      : error);
}

void FeedCheck::decide()
{
    std::optional<FeedAnswer> answer;
    try {
        answer = answerFromFeed(m_question, m_feed, m_signature);
    } catch (const UpdateError &error) {
        Q_EMIT failed(error);
        return;
    }
    Q_EMIT answered(*answer);
}

} // namespace quillmark
