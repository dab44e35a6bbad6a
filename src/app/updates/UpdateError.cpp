// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/UpdateError.h"

namespace quillmark {
namespace {

/// Some of it comes from servers: it is not to fill the screen.
constexpr qsizetype longestDetail = 200;

QString sentence(UpdateError::Case which, const QString &detail)
{
    using Case = UpdateError::Case;
    switch (which) {
    case Case::insecureAddress:
        return QStringLiteral("Updates are fetched over HTTPS only, which this address is not: ") +
               detail;
    case Case::unreachable:
        return QStringLiteral("The update server cannot be reached: ") + detail;
    case Case::untrustedServer:
        return QStringLiteral("The update server cannot prove that it is the right one: ") + detail;
    case Case::timedOut:
        return QStringLiteral("The update server does not answer.");
    case Case::tooSlow:
        return QStringLiteral("The update server sends too slowly.");
    case Case::badStatus:
        return QStringLiteral("The update server answered with status ") + detail + u'.';
    case Case::tooManyRedirects:
        return QStringLiteral("The update server sent the request on too many times.");
    case Case::insecureRedirect:
        return QStringLiteral(
            "The update server sent the request on to an address that is not encrypted.");
    case Case::truncated:
        return QStringLiteral(
            "The connection to the update server broke off before everything had arrived.");
    case Case::tooLarge:
        return QStringLiteral("The update server sent more than is accepted.");
    case Case::malformedFeed:
        return QStringLiteral("The list of versions cannot be read: ") + detail;
    case Case::feedUnsigned:
        return QStringLiteral("The list of versions is not signed, and was not used.");
    case Case::feedSignatureUnreadable:
        return QStringLiteral(
            "The signature of the list of versions cannot be read. The list was not used.");
    case Case::feedForged:
        return QStringLiteral("The list of versions does not bear its publisher's signature. "
                              "It may have been tampered with, and was not used.");
    case Case::feedUndated:
        return QStringLiteral(
            "The list of versions does not say when it was made, and was not used.");
    case Case::feedReplayed:
        return QStringLiteral(
            "The list of versions is older than one that was seen before, and was not used.");
    case Case::packageUnsigned:
        return QStringLiteral("The new version is not signed, and was refused: ") + detail;
    case Case::packageSignatureUnreadable:
        return QStringLiteral("The signature of the new version cannot be read. It was refused: ") +
               detail;
    case Case::packageUnusable:
        return QStringLiteral("The new version is not a package that can be installed here: ") +
               detail;
    case Case::packageTooLarge:
        return QStringLiteral("The new version is larger than what is fetched. It was refused: ") +
               detail;
    case Case::packageSizeWrong:
        return QStringLiteral("The package is not as large as it was announced, and was deleted.");
    case Case::packageForged:
        return QStringLiteral("The package does not bear its publisher's signature. "
                              "It may have been tampered with, and was deleted.");
    case Case::cannotStore:
        return QStringLiteral("The package cannot be stored: ") + detail;
    case Case::noInstaller:
        return QStringLiteral("No program on this system opens the package. It was deleted.");
    }
    return {};
}

} // namespace

UpdateError::UpdateError(Case which, const QString &detail)
    : m_case(which),
      m_detail(detail.simplified().left(longestDetail)),
      m_description(sentence(which, m_detail)),
      m_what(m_description.toUtf8())
{}

} // namespace quillmark
