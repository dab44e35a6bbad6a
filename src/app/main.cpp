// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/Accessibility.h"
#include "app/Memory.h"
#include "app/updates/UpdaterCoordinator.h"
#include "base/Background.h"
#include "embedding/ResourceBundle.h"

#include <QApplication>
#include <QFontDatabase>
#include <QIcon>
#include <QImageReader>
#include <QPixmap>
#include <QPixmapCache>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QSGRendererInterface>
#include <QUrl>
#include <QtQml/qqmlextensionplugin.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

Q_IMPORT_QML_PLUGIN(QuillmarkPlugin)

namespace {

/// Flat colour and text need no graphics card: the software renderer starts faster and holds
/// a third of the memory. Whoever asks for another one through the environment gets it.
void chooseRenderer()
{
    for (const char *variable : {"QT_QUICK_BACKEND", "QMLSCENE_DEVICE", "QSG_RHI_BACKEND"}) {
        if (qEnvironmentVariableIsSet(variable)) {
            return;
        }
    }
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

/// Qt 6.4 crashes at the first text cursor where a Wayland compositor offers version 1 of the
/// text input protocol but no input device, as one without a screen does. The compositors of
/// desktops have later versions. Whoever names the protocols through the environment gets them.
///
/// Stands for the time in which the application is made: what the program starts is to find
/// the environment as it was.
class TextInputChoice
{
public:
    TextInputChoice()
    {
        if (m_ours) {
            qputenv(variable, "qt_text_input_method_manager_v1;zwp_text_input_v2");
        }
    }
    ~TextInputChoice()
    {
        if (m_ours) {
            qunsetenv(variable);
        }
    }
    Q_DISABLE_COPY_MOVE(TextInputChoice)

private:
    static constexpr const char *variable = "QT_WAYLAND_TEXT_INPUT_PROTOCOL";
    const bool m_ours = !qEnvironmentVariableIsSet(variable);
};

/// For desktops that do not know the program, as where it was not installed. That the picture
/// is a PNG is said, so that Qt does not load all that might read it to find out.
void setWindowIcon()
{
    QImageReader reader(QStringLiteral(":/icons/64.png"), "png");
    reader.setAutoDetectImageFormat(false);
    QApplication::setWindowIcon(QIcon(QPixmap::fromImageReader(&reader)));
}

/// Stands for the time in which what is drawn is not kept to be drawn again.
class WithoutPixmapCache
{
public:
    WithoutPixmapCache() { QPixmapCache::setCacheLimit(0); }
    ~WithoutPixmapCache() { QPixmapCache::setCacheLimit(m_usual); }
    Q_DISABLE_COPY_MOVE(WithoutPixmapCache)

private:
    const int m_usual = QPixmapCache::cacheLimit();
};

/// A head start for what is done all the same where there is no thread to do it.
std::jthread startIfPossible(void (*work)())
{
    try {
        return std::jthread(work);
    } catch (const std::system_error &) {
        return {};
    }
}

/// The configuration that exiftool needs stands in the resource bundle: without it nothing
/// can be written, and nobody is to find that out after having dropped a roll.
bool hasResources()
{
    using namespace quillmark;
    const ResourceBundle::Places places = ResourceBundle::ownPlaces();
    if (ResourceBundle::find(places)) {
        return true;
    }
    std::fprintf(stderr, "%s\n", qUtf8Printable(ResourceBundle::missingText(places)));
    return false;
}

} // namespace

int main(int argc, char **argv)
{
    quillmark::returnMemory();
    if (!hasResources()) {
        return EXIT_FAILURE;
    }
    // A starter that ignores it passes that on, and the way in which exiftool ends is lost.
    std::signal(SIGCHLD, SIG_DFL);
    chooseRenderer();
    std::optional<TextInputChoice> textInput(std::in_place);
    // Widgets only for the file chooser.
    QApplication application(argc, argv);
    textInput.reset();
    QApplication::setApplicationName(QStringLiteral("Quillmark"));
    QApplication::setDesktopFileName(QStringLiteral("co.larkhollow.quillmark"));
    setWindowIcon();
    QApplication::setApplicationVersion(QStringLiteral(QUILLMARK_VERSION));
    // The window decides: a run that is writing outlives it.
    QApplication::setQuitOnLastWindowClosed(false);

    // Listing the installed fonts takes as long as loading the window: the list is ready by the
    // time that the first text is laid out.
    const std::jthread fontList = startIfPossible([] { QFontDatabase::families(); });

    quillmark::installAccessibility();
    quillmark::UpdaterCoordinator updates;
    QQmlEngine engine;
    QObject::connect(&engine, &QQmlEngine::exit, &application, &QCoreApplication::exit,
                     Qt::QueuedConnection);
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    QQmlComponent component(&engine, QUrl(QStringLiteral("qrc:/qt/qml/Quillmark/Main.qml")));
    std::unique_ptr<QObject> window;
    {
        // The window takes its icon now. From the cache of pixmaps it would wake an idle program
        // half a minute later, only to find out that nobody uses it any more.
        const WithoutPixmapCache icon;
        window.reset(component.createWithInitialProperties(
            {{QStringLiteral("updates"), QVariant::fromValue(&updates)}}));
    }
    if (!window) {
        qCritical("%s", qUtf8Printable(component.errorString()));
        return EXIT_FAILURE;
    }
    const int status = QApplication::exec();

    // The application's destructor waits for what goes on in the background, and a scan cannot be
    // cancelled, nor can the search for a server's address: they would keep a process without a
    // window alive for as long as the folder or a name server takes. Both only read, so the
    // process may end under them. Runs that write are over here.
    quillmark::Updater &updater = *updates.controller()->updater();
    const bool isFetching = updater.isFetching();
    updater.dismiss(); // which leaves no file behind
    if (isFetching || quillmark::isBackgroundBusy()) {
        std::quick_exit(status);
    }
    return status;
}
