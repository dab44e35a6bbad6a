// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "updates/TestServer.h"

#include "updates/TestAuthority.h"

#include <QHostAddress>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <stdexcept>

namespace quillmark::test {
namespace {

constexpr std::chrono::milliseconds dripTime{10};

} // namespace

TestServer::TestServer(Kind kind) : m_kind(kind)
{
    if (!listen(QHostAddress::LocalHost)) {
        throw std::runtime_error("no port to listen at");
    }
}

QUrl TestServer::address(const QString &path) const
{
    const QString scheme = m_kind == Kind::Tls ? QStringLiteral("https") : QStringLiteral("http");
    return QUrl(scheme + QStringLiteral("://127.0.0.1:") + QString::number(serverPort()) + path);
}

void TestServer::redirect(const QString &path, const QByteArray &location, int status)
{
    Answer answer;
    answer.status = status;
    answer.location = location;
    m_answers.insert(path, answer);
}

qsizetype TestServer::count(const QString &path) const
{
    const QByteArray wanted = "GET " + path.toLatin1() + ' ';
    return std::count_if(m_requests.begin(), m_requests.end(),
                         [&](const QByteArray &head) { return head.startsWith(wanted); });
}

void TestServer::incomingConnection(qintptr descriptor)
{
    auto *socket = new QSslSocket(this);
    socket->setSocketDescriptor(descriptor);
    connect(socket, &QSslSocket::disconnected, socket, &QObject::deleteLater);
    connect(socket, &QSslSocket::readyRead, this, [this, socket] { take(socket); });
    if (m_kind == Kind::Tls) {
        const TestAuthority &authority = TestAuthority::shared();
        socket->setLocalCertificate(authority.serverCertificate());
        socket->setPrivateKey(authority.serverKey());
        socket->startServerEncryption();
    }
}

void TestServer::take(QSslSocket *socket)
{
    const QByteArray head = socket->peek(65'536);
    if (!head.contains("\r\n\r\n")) {
        return; // the rest is to come
    }
    socket->readAll();
    m_requests.append(head);
    const QString path = QString::fromLatin1(head.split(' ').value(1));
    if (m_isHeld) {
        m_waiting.append({socket, path});
    } else {
        reply(socket, path);
    }
}

void TestServer::release()
{
    m_isHeld = false;
    for (const auto &[socket, path] : std::exchange(m_waiting, {})) {
        if (socket) {
            reply(socket, path);
        }
    }
}

void TestServer::reply(QSslSocket *socket, const QString &path)
{
    Answer missing;
    missing.status = 404;
    missing.body = "not here";
    reply(socket, m_answers.value(path, missing));
}

void TestServer::reply(QSslSocket *socket, const Answer &answer)
{
    if (answer.manner == Answer::Manner::Silent) {
        return;
    }
    QByteArray head =
        "HTTP/1.1 " + QByteArray::number(answer.status) + " So\r\nConnection: close\r\n";
    if (answer.lengthTold) {
        const qint64 length = answer.announced >= 0 ? answer.announced : answer.body.size();
        head += "Content-Length: " + QByteArray::number(length) + "\r\n";
    }
    if (!answer.location.isEmpty()) {
        head += "Location: " + answer.location + "\r\n";
    }
    socket->write(head + "\r\n");
    if (answer.manner == Answer::Manner::Drip) {
        auto *drip = new QTimer(socket);
        connect(drip, &QTimer::timeout, socket, [socket, body = answer.body, at = 0]() mutable {
            socket->write(body.mid(at++, 1));
            if (at >= body.size()) {
                socket->disconnectFromHost();
            }
        });
        drip->start(dripTime);
        return;
    }
    socket->write(answer.body);
    if (answer.manner == Answer::Manner::Whole) {
        socket->disconnectFromHost();
    }
}

} // namespace quillmark::test
