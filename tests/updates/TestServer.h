// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QPointer>
#include <QSslSocket>
#include <QString>
#include <QTcpServer>
#include <QUrl>

#include <utility>

namespace quillmark::test {

/// What a server says to a request, and how.
struct Answer {
    enum class Manner {
        Whole,  ///< all at once
        Drip,   ///< a byte now and a byte then
        Stall,  ///< all that there is, and then nothing more, without an end
        Silent, ///< nothing at all
    };

    int status = 200;
    QByteArray body;
    QByteArray location; ///< where a redirect leads
    Manner manner = Manner::Whole;
    qint64 announced = -1; ///< the length that is told, if it is not the body's
    bool lengthTold = true;
};

/// A server on this machine: over TLS, with the test authority's certificate, or plain. It runs
/// in the event loop of whoever makes it.
class TestServer : public QTcpServer
{
    Q_OBJECT

public:
    enum class Kind { Tls, Plain };

    explicit TestServer(Kind kind = Kind::Tls);

    QUrl address(const QString &path) const;
    /// From now on.
    void answer(const QString &path, const Answer &answer) { m_answers.insert(path, answer); }
    void answer(const QString &path, const QByteArray &body)
    {
        Answer plain;
        plain.body = body;
        m_answers.insert(path, plain);
    }
    void redirect(const QString &path, const QByteArray &location, int status = 302);

    /// From now on requests wait for release().
    void hold() { m_isHeld = true; }
    void release();

    /// The heads of the requests, in their order.
    const QList<QByteArray> &requests() const { return m_requests; }
    /// How often a path was asked for.
    qsizetype count(const QString &path) const;

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    void take(QSslSocket *socket);
    void reply(QSslSocket *socket, const QString &path);
    void reply(QSslSocket *socket, const Answer &answer);

    const Kind m_kind;
    QHash<QString, Answer> m_answers;
    QList<QByteArray> m_requests;
    QList<std::pair<QPointer<QSslSocket>, QString>> m_waiting;
    bool m_isHeld = false;
};

} // namespace quillmark::test
