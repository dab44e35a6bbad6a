// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/updates/HttpFetch.h"
#include "app/updates/UpdateConfiguration.h"
#include "app/updates/UpdateSelection.h"

#include <QByteArray>
#include <QDateTime>
#include <QObject>
#include <QString>

#include <memory>
#include <optional>

namespace quillmark {

/// What a check of the feed starts from.
struct FeedQuestion {
    UpdateConfiguration configuration;
    QString currentVersion;
    SystemFacts system;
    std::optional<QDateTime> newestSeen; ///< the date of the newest feed that was believed
};

/// What a feed says that was believed.
struct FeedAnswer {
    std::optional<AppcastItem> update; ///< nothing: this is the newest version
    QDateTime feedDate;
};

/// Where the signature of a feed stands: beside it, its name and ".sig".
QUrl signatureAddress(const QUrl &feed);

/// Decides what a feed's bytes say. Nothing of an unsigned feed is even parsed.
///
/// Throws UpdateError where the feed or the package that it offers is not to be trusted.
/// Any thread.
FeedAnswer answerFromFeed(const FeedQuestion &question, const QByteArray &feed,
                          const QByteArray &signature);

/// Fetches the feed and its signature, once, and decides. The main thread.
class FeedCheck : public QObject
{
    Q_OBJECT

public:
    FeedCheck(QNetworkAccessManager &network, FeedQuestion question, const FetchLimits &limits,
              QObject *parent = nullptr);

    /// Once. Ends with exactly one of answered() and failed(), from the event loop.
    void start();

Q_SIGNALS:
    void answered(const quillmark::FeedAnswer &answer);
    void failed(const quillmark::UpdateError &error);

private:
    void fetchSignature();
    void takeSignatureError(const UpdateError &error);
    void decide();

    QNetworkAccessManager &m_network;
    const FeedQuestion m_question;
    const FetchLimits m_limits;
    std::unique_ptr<HttpFetch> m_fetch;
    QByteArray m_feed;
    QByteArray m_signature;
};

} // namespace quillmark
