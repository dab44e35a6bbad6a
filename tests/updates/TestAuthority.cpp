// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "updates/TestAuthority.h"

#include <QProcess>
#include <QSslConfiguration>

#include <stdexcept>

namespace quillmark::test {
namespace {

void runOpenssl(const TempDir &folder, const QString &arguments)
{
    QProcess openssl;
    openssl.setWorkingDirectory(QString::fromStdString(folder.path().string()));
    openssl.start(QStringLiteral("openssl"),
                  QString(QStringLiteral("req -x509 -nodes -days 2 -newkey ec "
                                         "-pkeyopt ec_paramgen_curve:prime256v1 ") +
                          arguments)
                      .split(u' '));
    if (!openssl.waitForFinished() || openssl.exitCode() != 0) {
        throw std::runtime_error("openssl: " + openssl.readAllStandardError().toStdString());
    }
}

QByteArray bytes(const std::filesystem::path &file)
{
    return QByteArray::fromStdString(readFile(file));
}

} // namespace

TestAuthority::TestAuthority()
{
    const TempDir folder;
    runOpenssl(folder, QStringLiteral("-keyout ca.key -out ca.pem -subj /CN=Authority"));
    runOpenssl(folder, QStringLiteral("-CA ca.pem -CAkey ca.key -keyout server.key -out server.pem "
                                      "-subj /CN=Server -addext basicConstraints=CA:FALSE "
                                      "-addext subjectAltName=IP:127.0.0.1,DNS:localhost"));
    m_certificate = QSslCertificate(bytes(folder / "ca.pem"));
    m_serverCertificate = QSslCertificate(bytes(folder / "server.pem"));
    m_serverKey = QSslKey(bytes(folder / "server.key"), QSsl::Ec);
    if (m_certificate.isNull() || m_serverCertificate.isNull() || m_serverKey.isNull()) {
        throw std::runtime_error("openssl made something else");
    }
}

const TestAuthority &TestAuthority::shared()
{
    static const TestAuthority authority;
    return authority;
}

TestAuthority::Trust::Trust(const TestAuthority &authority)
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates({authority.certificate()});
    QSslConfiguration::setDefaultConfiguration(configuration);
}

TestAuthority::Trust::~Trust()
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates({});
    QSslConfiguration::setDefaultConfiguration(configuration);
}

} // namespace quillmark::test
