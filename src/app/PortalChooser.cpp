// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/PortalChooser.h"

#include "app/FileUrl.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QUuid>

#include <chrono>
#include <utility>

namespace quillmark {
namespace {

const auto service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto desktopPath = QStringLiteral("/org/freedesktop/portal/desktop");
const auto chooserInterface = QStringLiteral("org.freedesktop.portal.FileChooser");
const auto requestInterface = QStringLiteral("org.freedesktop.portal.Request");

/// The first version of the interface that knows how to ask for a folder.
constexpr uint folderVersion = 3;
/// The answers to the first calls come before anybody sees a chooser: a portal that hangs is
/// given up while the user still remembers having pressed the button.
constexpr std::chrono::milliseconds answerTime{3'000};

/// How the portal takes a rule of a name filter: 0 for a pattern, 1 for a MIME type.
struct FilterRule {
    uint kind = 0;
    QString pattern;
};
struct Filter {
    QString title;
    QList<FilterRule> rules;
};

QDBusArgument &operator<<(QDBusArgument &argument, const FilterRule &rule)
{
    argument.beginStructure();
    argument << rule.kind << rule.pattern;
    argument.endStructure();
    return argument;
}
const QDBusArgument &operator>>(const QDBusArgument &argument, FilterRule &rule)
{
    argument.beginStructure();
    argument >> rule.kind >> rule.pattern;
    argument.endStructure();
    return argument;
}
QDBusArgument &operator<<(QDBusArgument &argument, const Filter &filter)
{
    argument.beginStructure();
    argument << filter.title << filter.rules;
    argument.endStructure();
    return argument;
}
const QDBusArgument &operator>>(const QDBusArgument &argument, Filter &filter)
{
    argument.beginStructure();
    argument >> filter.title >> filter.rules;
    argument.endStructure();
    return argument;
}

void registerTypes()
{
    static const bool once = [] {
        qDBusRegisterMetaType<FilterRule>();
        qDBusRegisterMetaType<QList<FilterRule>>();
        qDBusRegisterMetaType<Filter>();
        qDBusRegisterMetaType<QList<Filter>>();
        return true;
    }();
    Q_UNUSED(once)
}

QList<Filter> portalFilters(const std::vector<NameFilter> &filters)
{
    QList<Filter> result;
    for (const NameFilter &filter : filters) {
        QList<FilterRule> rules;
        for (const QString &pattern : filter.patterns) {
            rules.append({0, pattern});
        }
        result.append({filter.title, rules});
    }
    return result;
}

/// The portal takes paths as bytes that end in a zero byte.
QByteArray portalPath(const QUrl &location)
{
    const auto path = pathFromFileUrl(location);
    return path ? QByteArray::fromStdString(path->native()).append('\0') : QByteArray();
}

QDBusConnection bus()
{
    return QDBusConnection::sessionBus();
}

} // namespace

PortalChooser::PortalChooser(ChooserRequest request, bool autoStart, QObject *parent)
    : QObject(parent),
      m_request(std::move(request)),
      m_autoStart(autoStart),
      m_token(QStringLiteral("quillmark_") + QUuid::createUuid().toString(QUuid::Id128)),
      m_service(service, bus(), QDBusServiceWatcher::WatchForUnregistration)
{
    registerTypes();
    connect(&m_service, &QDBusServiceWatcher::serviceUnregistered, this, &PortalChooser::fail);
}

PortalChooser::~PortalChooser()
{
    if (m_stage == Stage::Open) {
        close();
    }
}

bool PortalChooser::canBeAsked()
{
    return bus().isConnected();
}

void PortalChooser::open(QWindow *parentWindow)
{
    m_parentWindow = parentWindow;
    QDBusMessage version = QDBusMessage::createMethodCall(
        service, desktopPath, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    version << chooserInterface << QStringLiteral("version");
    version.setAutoStartService(m_autoStart);
    call(version, &PortalChooser::takeVersion);
}

void PortalChooser::call(const QDBusMessage &message, Answer answer)
{
    auto *watcher = new QDBusPendingCallWatcher(
        bus().asyncCall(message, static_cast<int>(answerTime.count())), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, answer] {
        watcher->deleteLater();
        if (m_stage == Stage::Over) {
            return;
        }
        if (watcher->isError()) {
            fail();
        } else {
            (this->*answer)(watcher->reply().arguments().value(0));
        }
    });
}

void PortalChooser::takeVersion(const QVariant &answer)
{
    const uint version = answer.value<QDBusVariant>().variant().toUInt();
    if (m_request.folder && version < folderVersion) {
        fail();
        return;
    }
    QDBusMessage open = QDBusMessage::createMethodCall(service, desktopPath, chooserInterface,
                                                       QStringLiteral("OpenFile"));
    open << parentHandle() << m_request.title << options();
    // Listened for before the call, so that no answer can come too early.
    const QString sender = bus().baseService().mid(1).replace(u'.', u'_');
    expectResponseAt(desktopPath + QStringLiteral("/request/") + sender + u'/' + m_token);
    m_stage = Stage::Open;
    call(open, &PortalChooser::takeRequest);
}

void PortalChooser::takeRequest(const QVariant &answer)
{
    // Portals of long ago named the request themselves.
    expectResponseAt(answer.value<QDBusObjectPath>().path());
}

void PortalChooser::expectResponseAt(const QString &requestPath)
{
    if (requestPath == m_requestPath) {
        return;
    }
    const QString signal = QStringLiteral("Response");
    const char *const slot = SLOT(takeResponse(uint, QVariantMap));
    if (!m_requestPath.isEmpty()) {
        bus().disconnect(service, m_requestPath, requestInterface, signal, this, slot);
    }
    m_requestPath = requestPath;
    bus().connect(service, m_requestPath, requestInterface, signal, this, slot);
}

void PortalChooser::takeResponse(uint response, const QVariantMap &results)
{
    constexpr uint confirmed = 0;
    constexpr uint cancelledByUser = 1;
    if (m_stage == Stage::Over) {
        return;
    }
    if (response != confirmed && response != cancelledByUser) {
        fail();
        return;
    }
    m_stage = Stage::Over;
    const QStringList uris = results.value(QStringLiteral("uris")).toStringList();
    if (response == confirmed && !uris.isEmpty()) {
        Q_EMIT chosen(QUrl::fromEncoded(uris.first().toUtf8()));
    } else {
        Q_EMIT cancelled();
    }
}

QVariantMap PortalChooser::options() const
{
    QVariantMap options{{QStringLiteral("handle_token"), m_token},
                        {QStringLiteral("accept_label"), m_request.acceptLabel},
                        {QStringLiteral("modal"), true},
                        {QStringLiteral("multiple"), false},
                        {QStringLiteral("directory"), m_request.folder}};
    if (!m_request.filters.empty()) {
        options.insert(QStringLiteral("filters"),
                       QVariant::fromValue(portalFilters(m_request.filters)));
    }
    if (const QByteArray folder = portalPath(m_request.startFolder); !folder.isEmpty()) {
        options.insert(QStringLiteral("current_folder"), folder);
    }
    return options;
}

/// How the portal names the window that its chooser belongs to. Qt has no public way to export
/// a Wayland window's handle: there the chooser is a window of its own.
QString PortalChooser::parentHandle() const
{
    if (!m_parentWindow || QGuiApplication::platformName() != QLatin1String("xcb")) {
        return {};
    }
    return QStringLiteral("x11:") + QString::number(m_parentWindow->winId(), 16);
}

void PortalChooser::close()
{
    bus().send(QDBusMessage::createMethodCall(service, m_requestPath, requestInterface,
                                              QStringLiteral("Close")));
}

void PortalChooser::fail()
{
    const Stage stage = std::exchange(m_stage, Stage::Over);
    if (stage == Stage::Over) {
        return;
    }
    if (stage == Stage::Open) {
        close(); // one that was only slow is not to appear later on
    }
    Q_EMIT unavailable();
}

} // namespace quillmark
