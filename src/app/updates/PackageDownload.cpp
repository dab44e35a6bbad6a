// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/PackageDownload.h"

#include "app/updates/PackageName.h"
#include "base/Background.h"
#include "base/Described.h"

#include <QDateTime>
#include <QDir>
#include <QPointer>
#include <QStandardPaths>

#include <algorithm>
#include <span>
#include <utility>

namespace quillmark {
namespace {

/// Whether the file has the owner's signature. It is mapped, not read: it may be larger than
/// what should be in memory at once.
bool isFileSigned(const QString &path, const PublicKey &key, const Signature &signature)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw UpdateError(UpdateError::Case::cannotStore, file.errorString());
    }
    const qint64 size = file.size();
    const uchar *bytes = size > 0 ? file.map(0, size) : nullptr;
    if (size > 0 && bytes == nullptr) {
        throw UpdateError(UpdateError::Case::cannotStore, file.errorString());
    }
    return isSignedBy(key, signature,
                      std::as_bytes(std::span(bytes, static_cast<std::size_t>(size))));
}

} // namespace

PackageDownload::PackageDownload(QNetworkAccessManager &network, AppcastItem item,
                                 const PublicKey &key, const FetchLimits &limits, QObject *parent)
    : QObject(parent), m_network(network), m_item(std::move(item)), m_key(key), m_limits([&] {
          FetchLimits own = limits;
          own.bytes = m_item.packageBytes > 0 ? std::min(m_item.packageBytes, largestPackage)
                                              : largestPackage;
          return own;
      }())
{}

PackageDownload::~PackageDownload() = default;

QString PackageDownload::place()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
           QStringLiteral("/quillmark/updates");
}

void PackageDownload::removeLeftovers()
{
    const QDateTime yesterday = QDateTime::currentDateTimeUtc().addDays(-1);
    const QDir place(PackageDownload::place());
    for (const QFileInfo &each : place.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (each.lastModified() < yesterday && !each.isSymLink()) {
            QDir(each.filePath()).removeRecursively();
        }
    }
}

void PackageDownload::start()
{
    if (m_item.packageBytes > largestPackage) {
        fail(UpdateError(UpdateError::Case::packageTooLarge, m_item.shortVersion));
        return;
    }
    try {
        makeFile();
    } catch (const UpdateError &error) {
        fail(error);
        return;
    }
    m_fetch = std::make_unique<HttpFetch>(m_network, m_limits,
                                          [this](const QByteArray &bytes) { write(bytes); });
    connect(m_fetch.get(), &HttpFetch::progressed, this, [this](qint64 received, qint64 expected) {
        Q_EMIT progressed(received, m_item.packageBytes > 0 ? m_item.packageBytes : expected);
    });
    connect(m_fetch.get(), &HttpFetch::failed, this, [this](const UpdateError &error) {
        // Where the feed says how large the package is, a larger one is another one.
        if (error.which() != UpdateError::Case::tooLarge) {
            fail(error);
            return;
        }
        fail(m_item.packageBytes > 0
                 ? UpdateError(UpdateError::Case::packageSizeWrong)
                 : UpdateError(UpdateError::Case::packageTooLarge, m_item.shortVersion));
    });
    connect(m_fetch.get(), &HttpFetch::finished, this, [this] { verify(); });
    m_fetch->start(m_item.package);
}

void PackageDownload::makeFile()
{
    const auto name = packageFileName(m_item.package);
    if (!name) {
        throw UpdateError(UpdateError::Case::packageUnusable,
                          m_item.package.fileName(QUrl::FullyDecoded));
    }
    const QDir place(PackageDownload::place());
    if (!place.mkpath(QStringLiteral("."))) {
        throw UpdateError(UpdateError::Case::cannotStore, place.path());
    }
    removeLeftovers();
    m_folder = std::make_unique<QTemporaryDir>(place.filePath(QStringLiteral("XXXXXX")));
    m_file.setFileName(m_folder->filePath(*name));
    if (!m_folder->isValid() || !m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        throw UpdateError(UpdateError::Case::cannotStore,
                          m_folder->isValid() ? m_file.errorString() : m_folder->errorString());
    }
}

void PackageDownload::write(const QByteArray &bytes)
{
    if (m_file.write(bytes) != bytes.size()) {
        throw UpdateError(UpdateError::Case::cannotStore, m_file.errorString());
    }
}

QCoro::Task<> PackageDownload::verify()
{
    const QPointer<PackageDownload> alive(this);
    m_file.close();
    if (m_file.error() != QFileDevice::NoError) {
        fail(UpdateError(UpdateError::Case::cannotStore, m_file.errorString()));
        co_return;
    }
    if (m_item.packageBytes > 0 && m_file.size() != m_item.packageBytes) {
        fail(UpdateError(UpdateError::Case::packageSizeWrong));
        co_return;
    }
    const auto signature = signatureFromBase64(m_item.packageSignature.toLatin1());
    if (!signature) {
        fail(UpdateError(UpdateError::Case::packageSignatureUnreadable, m_item.shortVersion));
        co_return;
    }
    Q_EMIT fetched();
    std::optional<UpdateError> error;
    try {
        if (!co_await runInBackground(&isFileSigned, m_file.fileName(), m_key, *signature)) {
            error.emplace(UpdateError::Case::packageForged);
        }
    } catch (const UpdateError &caught) {
        error = caught;
    } catch (...) {
        error.emplace(UpdateError::Case::cannotStore, describe(std::current_exception()));
    }
    if (!alive) {
        co_return;
    }
    if (error) {
        fail(*error);
        co_return;
    }
    Q_EMIT verified(m_file.fileName());
}

void PackageDownload::fail(const UpdateError &error)
{
    m_file.close();
    m_folder.reset(); // at once: nothing that was refused stays
    const auto tell = [this, error] { Q_EMIT failed(error); };
    QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
}

} // namespace quillmark
