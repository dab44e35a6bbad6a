// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "appcast/AppcastTool.h"

#include "app/updates/FeedCheck.h"
#include "app/updates/PackageDownload.h"
#include "app/updates/PackageName.h"
#include "appcast/FeedWriter.h"
#include "appcast/SecretKey.h"

#include <QCommandLineParser>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <array>
#include <filesystem>
#include <optional>
#include <stdexcept>

namespace quillmark::tools {
namespace {

[[noreturn]] void complain(const QString &text)
{
    throw std::runtime_error(text.toStdString());
}

std::filesystem::path pathOf(const QString &argument)
{
    return QFile::encodeName(argument).toStdString();
}

QByteArray readWhole(const QString &name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        complain(name + QStringLiteral(": ") + file.errorString());
    }
    return file.readAll();
}

/// Throws where the program would not fetch it.
QByteArray readPackage(const QString &name)
{
    if (QFileInfo(name).size() > largestPackage) {
        complain(
            name +
            QStringLiteral(" is larger than the %1 bytes that are fetched").arg(largestPackage));
    }
    return readWhole(name);
}

void writeWhole(const QString &name, const QByteArray &bytes)
{
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        complain(name + QStringLiteral(": ") + file.errorString());
    }
}

QString signatureText(const SecretKey &key, const QByteArray &bytes)
{
    return QString::fromLatin1(toBase64(key.sign(bytesOf(bytes))));
}

/// Writes the signature that belongs beside the feed.
void seal(const SecretKey &key, const QString &feed, const QByteArray &bytes)
{
    writeWhole(feed + QStringLiteral(".sig"), signatureText(key, bytes).toLatin1() + '\n');
}

/// The arguments of one command: how many there have to be, and its options.
class Arguments
{
public:
    Arguments(const QStringList &all, qsizetype wanted, const QStringList &options)
    {
        for (const QString &name : options) {
            m_parser.addOption({name, QString(), QStringLiteral("value")});
        }
        // The parser takes the first one for the program's name: here it is the command's.
        if (!m_parser.parse(all)) {
            complain(m_parser.errorText());
        }
        if (m_parser.positionalArguments().size() != wanted) {
            complain(all.first() + QStringLiteral(" takes %1 arguments\n\n").arg(wanted) +
                     appcastUsage());
        }
    }

    QString at(qsizetype index) const { return m_parser.positionalArguments().at(index); }
    QString option(const char *name) const
    {
        return m_parser.value(QString::fromLatin1(name)).trimmed();
    }
    QString needed(const char *name) const
    {
        QString value = option(name);
        if (value.isEmpty()) {
            complain(QStringLiteral("--") + QString::fromLatin1(name) +
                     QStringLiteral(" is missing"));
        }
        return value;
    }

private:
    QCommandLineParser m_parser;
};

QString makeKeys(const QStringList &all)
{
    const Arguments arguments(all, 1, {});
    const SecretKey key = SecretKey::make();
    key.save(pathOf(arguments.at(0)));
    return QString::fromLatin1(toBase64(key.publicKey()));
}

QString showKey(const QStringList &all)
{
    const Arguments arguments(all, 1, {});
    return QString::fromLatin1(toBase64(SecretKey::load(pathOf(arguments.at(0))).publicKey()));
}

QString signPackage(const QStringList &all)
{
    const Arguments arguments(all, 2, {});
    const SecretKey key = SecretKey::load(pathOf(arguments.at(0)));
    const QByteArray package = readPackage(arguments.at(1));
    return QStringLiteral("sparkle:edSignature=\"%1\" length=\"%2\"")
        .arg(signatureText(key, package))
        .arg(package.size());
}

QString sealFeed(const QStringList &all)
{
    const Arguments arguments(all, 2, {});
    const SecretKey key = SecretKey::load(pathOf(arguments.at(0)));
    const QByteArray feed = readWhole(arguments.at(1));
    if (!readAppcast(feed).date) { // throws where the program could not read it
        complain(arguments.at(1) + QStringLiteral(" does not say when it was made"));
    }
    seal(key, arguments.at(1), feed);
    return arguments.at(1) + QStringLiteral(" is signed");
}

void readNotes(AppcastItem &item, const QString &file)
{
    if (file.isEmpty()) {
        return;
    }
    item.notes = QString::fromUtf8(readWhole(file)).trimmed();
    item.notesFormat = file.endsWith(QLatin1StringView(".md"))
                           ? AppcastItem::NotesFormat::Markdown
                           : AppcastItem::NotesFormat::PlainText;
}

AppcastItem itemFrom(const Arguments &arguments, const SecretKey &key)
{
    const QByteArray package = readPackage(arguments.needed("package"));
    AppcastItem item;
    item.version = arguments.needed("version");
    item.shortVersion = arguments.option("short-version");
    if (item.shortVersion.isEmpty()) {
        item.shortVersion = item.version;
    }
    item.package = QUrl(arguments.needed("url"), QUrl::StrictMode);
    if (!isSafeAddress(item.package) || !packageFileName(item.package)) {
        complain(QStringLiteral("no HTTPS address of a package: ") + arguments.option("url"));
    }
    item.packageSignature = signatureText(key, package);
    item.packageBytes = package.size();
    item.os = QStringLiteral("linux");
    item.architectures = arguments.option("architecture").split(u',', Qt::SkipEmptyParts);
    item.minimumSystemVersion = arguments.option("minimum-system");
    readNotes(item, arguments.option("notes"));
    return item;
}

/// When the feed is made, from what was typed. Throws where the program would refuse the feed for
/// it, or those that follow.
QDateTime dateFrom(const QString &typed, const std::optional<QDateTime> &before)
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    QDateTime made = typed.isEmpty() ? now : QDateTime::fromString(typed, Qt::ISODate);
    if (!made.isValid()) {
        complain(QStringLiteral("no ISO date: ") + typed);
    }
    if (made > now) {
        complain(QStringLiteral("the date is in the future: ") + typed);
    }
    if (before && made < *before) {
        complain(QStringLiteral("the feed has a newer date already: ") +
                 before->toString(Qt::ISODate));
    }
    return made;
}

QString addItem(const QStringList &all)
{
    const Arguments arguments(all, 2,
                              {QStringLiteral("package"), QStringLiteral("url"),
                               QStringLiteral("version"), QStringLiteral("short-version"),
                               QStringLiteral("architecture"), QStringLiteral("minimum-system"),
                               QStringLiteral("notes"), QStringLiteral("date")});
    const SecretKey key = SecretKey::load(pathOf(arguments.at(0)));
    const QString file = arguments.at(1);
    const QByteArray before = QFileInfo::exists(file) ? readWhole(file) : emptyFeed();
    const QDateTime made = dateFrom(arguments.option("date"), readAppcast(before).date);
    const AppcastItem item = itemFrom(arguments, key);
    const QByteArray feed = feedWith(before, item, made);
    writeWhole(file, feed);
    seal(key, file, feed);
    return file + QStringLiteral(" offers version ") + item.shortVersion;
}

QString checkFeed(const QStringList &all)
{
    const Arguments arguments(all, 2, {});
    const auto key = publicKeyFromBase64(arguments.at(0).toLatin1());
    if (!key) {
        complain(QStringLiteral("no public key: ") + arguments.at(0));
    }
    FeedQuestion question;
    question.configuration.publicKey = *key;
    question.system = ownSystemFacts();
    const FeedAnswer answer = answerFromFeed(question, readWhole(arguments.at(1)),
                                             readWhole(arguments.at(1) + QStringLiteral(".sig")));
    return answer.update
               ? QStringLiteral("this system is offered version ") + answer.update->shortVersion
               : QStringLiteral("this system is offered nothing");
}

} // namespace

QString appcastUsage()
{
    return QStringLiteral(
        "appcast keys SECRET             makes a key pair: the secret key becomes a new file,\n"
        "                                the public key is printed\n"
        "appcast public SECRET           prints the public key again\n"
        "appcast sign SECRET PACKAGE     prints the attributes of a package in a feed\n"
        "appcast add SECRET FEED OPTION...\n"
        "                                adds a version to a feed, which is made where it is\n"
        "                                missing, and signs the feed\n"
        "  --package FILE --url ADDRESS  the package, and from where it will be fetched\n"
        "  --version VERSION             what versions are compared by\n"
        "  --short-version NAME          what people call it, if that is something else\n"
        "  --architecture NAME[,NAME]    if it is not for all: x86_64, arm64\n"
        "  --minimum-system VERSION      the oldest kernel that it runs on\n"
        "  --notes FILE                  release notes: Markdown (.md) or plain text\n"
        "  --date DATE                   when the feed was made, in ISO 8601; now by default\n"
        "                                and never later, nor before the date that it had\n"
        "appcast seal SECRET FEED        signs a feed that was changed by other means\n"
        "appcast check KEY FEED          reads a feed as the program does, with the public key\n");
}

QString runAppcastTool(const QStringList &arguments)
{
    struct Command {
        const char *name;
        QString (*run)(const QStringList &);
    };
    constexpr std::array commands{
        Command{"keys", &makeKeys}, Command{"public", &showKey}, Command{"sign", &signPackage},
        Command{"add", &addItem},   Command{"seal", &sealFeed},  Command{"check", &checkFeed},
    };
    for (const Command &command : commands) {
        if (arguments.value(0) == QLatin1StringView(command.name)) {
            return command.run(arguments);
        }
    }
    complain(appcastUsage());
}

} // namespace quillmark::tools
