// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "updates/TestAuthority.h"

#include "embedding/ChildProcess.h"

#include <QSslConfiguration>

#include <stdexcept>
#include <string>
#include <vector>

namespace quillmark::test {
namespace {

void runOpenssl(const std::vector<std::string> &further)
{
    std::vector<std::string> arguments{"req",   "-x509",    "-nodes",
                                       "-days", "2",        "-newkey",
                                       "ec",    "-pkeyopt", "ec_paramgen_curve:prime256v1"};
    arguments.insert(arguments.end(), further.begin(), further.end());
    const ChildResult result = runChild("/usr/bin/openssl", arguments);
    if (result.status != 0) {
        throw std::runtime_error("openssl: " + result.errors);
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
    const auto file = [&folder](const char *name) { return (folder / name).string(); };
    runOpenssl({"-keyout", file("ca.key"), "-out", file("ca.pem"), "-subj", "/CN=Authority"});
    runOpenssl({"-CA", file("ca.pem"), "-CAkey", file("ca.key"), "-keyout", file("server.key"),
                "-out", file("server.pem"), "-subj", "/CN=Server", "-addext",
                "basicConstraints=CA:FALSE", "-addext",
                "subjectAltName=IP:127.0.0.1,DNS:localhost"});
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
