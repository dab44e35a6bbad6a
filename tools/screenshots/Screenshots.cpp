// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// Saves a picture of every screen. Needs no display; QT_SCALE_FACTOR sets the density.

#include "app/ManualEntryForm.h"
#include "app/ReferencePhoto.h"
#include "app/SessionBridge.h"
#include "manual/LastUsedPayloadStore.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QCursor>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QImage>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QtQml/qqmlextensionplugin.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

Q_IMPORT_QML_PLUGIN(QuillmarkPlugin)

namespace {

using namespace quillmark;
using Session = IngestViewModel;

/// How long a picture of a scan may take to be read.
constexpr int pictureTimeout = 60'000;

struct Options {
    QDir folder;
    std::filesystem::path frame; ///< what stands beside the form as the slate; may be empty
    bool overlong = false;
    QString suffix;
};

struct Shot {
    QString name;
    Session::State state;
    std::function<void(QQuickWindow &)> prepare; ///< what is opened on the screen; may be none
};

SlatePayload samplePayload()
{
    SlatePayload payload;
    payload.version = 2;
    payload.sessionId = QStringLiteral("7c9e6679-7425-40de-944b-e07fc1f90ae7");
    payload.cameraMake = QStringLiteral("Kestrel");
    payload.cameraModel = QStringLiteral("K2");
    payload.filmBrand = QStringLiteral("Vela");
    payload.filmStock = QStringLiteral("Nova 400");
    payload.iso = 400;
    payload.lensMake = QStringLiteral("Optar");
    payload.lensModel = QStringLiteral("50mm f/2");
    payload.focalLength = 50;
    payload.pushPull = 1;
    payload.location = QStringLiteral("Grünerløkka, Oslo");
    payload.date = QStringLiteral("2026-05-01");
    payload.rollName = QStringLiteral("Roll 12");
    payload.notes = QStringLiteral("Fog at dawn");
    payload.artist = QStringLiteral("Zoë Ångström");
    payload.copyright = QStringLiteral("© 2026 Zoë Ångström");
    return payload;
}

QQuickItem *itemWith(const QQuickWindow &window, const char *property, const QVariant &value)
{
    const QList<QQuickItem *> items = window.findChildren<QQuickItem *>();
    const auto found = std::find_if(items.begin(), items.end(), [&](const QQuickItem *item) {
        const QVariant own = item->property(property);
        return own.isValid() && own == value;
    });
    return found == items.end() ? nullptr : *found;
}

void openMenu(QQuickWindow &window)
{
    QMetaObject::invokeMethod(itemWith(window, "file", QStringLiteral("WindowMenu.qml")), "open");
}

void openAbout(QQuickWindow &window)
{
    QMetaObject::invokeMethod(itemWith(window, "file", QStringLiteral("WindowMenu.qml")), "close");
    QMetaObject::invokeMethod(itemWith(window, "file", QStringLiteral("AboutDialog.qml")), "open");
}

void openCalendar(QQuickWindow &window)
{
    auto *form = window.findChild<ManualEntryForm *>();
    form->setProperty("includeDate", true);
    form->setDateText(QStringLiteral("2026-05-01"));
    QQuickItem *picker = itemWith(window, "opened", false);
    QMetaObject::invokeMethod(picker, "takeFocus"); // which scrolls to it
    QCoreApplication::processEvents();
    QMetaObject::invokeMethod(picker, "open");
}

/// Every screen, for a roll in a folder of this name.
std::vector<Shot> shots(const std::string &folderName, const SlatePayload &payload,
                        const QString &error, const std::filesystem::path &frame)
{
    const std::filesystem::path folder = "/rolls/" + folderName;
    const IngestPlan plan{.folder = folder,
                          .detection = {folder / "frame-02.tif", payload, QString()},
                          .rollFiles = std::vector<std::filesystem::path>(36),
                          .backupMode = BackupMode::backupOriginals};
    const IngestOutcome outcome{plan, plan.rollFiles, plan.rollFiles};
    const std::optional<std::filesystem::path> slate =
        frame.empty() ? std::nullopt : std::optional(frame);
    return {
        {QStringLiteral("idle"), Session::Idle{}, {}},
        {QStringLiteral("scanning"), Session::Scanning{folder}, {}},
        {QStringLiteral("plan"), Session::Ready{plan}, {}},
        {QStringLiteral("slate-not-found"), Session::DetectionFailed{folder, 36}, {}},
        {QStringLiteral("manual-entry-empty"), Session::ManualEntry{folder, std::nullopt}, {}},
        {QStringLiteral("manual-entry"), Session::ManualEntry{folder, slate}, {}},
        {QStringLiteral("calendar"), Session::ManualEntry{folder, slate}, &openCalendar},
        {QStringLiteral("writing"), Session::Writing{plan}, {}},
        {QStringLiteral("done"), Session::Done{outcome}, {}},
        {QStringLiteral("error"), Session::Error{error}, {}},
        {QStringLiteral("menu"), Session::Idle{}, &openMenu},
        {QStringLiteral("about"), Session::Idle{}, &openAbout},
    };
}

std::vector<Shot> everydayShots(const std::filesystem::path &frame)
{
    return shots("Harbour 12", samplePayload(),
                 QStringLiteral("exiftool failed (exit 1): Error: File not found - a.jpg"), frame);
}

/// The same with texts as long as file systems and slates allow.
std::vector<Shot> overlongShots(const std::filesystem::path &frame)
{
    SlatePayload payload = samplePayload();
    payload.notes = QStringLiteral("A long note about light and fog. ").repeated(30);
    payload.cameraModel = QString(200, QLatin1Char('K'));
    return shots(std::string(200, 'm'), payload,
                 QStringLiteral("Error: File format error - a.jpg\n").repeated(100), frame);
}

bool isWaiting(const QQuickWindow &window)
{
    const auto *photo = window.findChild<ReferencePhoto *>();
    return photo != nullptr && !photo->isEmpty() && photo->picture().isNull();
}

/// Returns once the picture beside the form is there, or none is to come.
void waitForPicture(const QQuickWindow &window)
{
    QElapsedTimer clock;
    clock.start();
    while (isWaiting(window) && !clock.hasExpired(pictureTimeout)) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

bool save(QQuickWindow &window, const Shot &shot, const Options &options)
{
    Session &session = window.findChild<SessionBridge *>()->viewModel();
    session.setState(Session::Idle{}); // so that each screen is a new one
    session.setState(shot.state);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // the screens before
    QCoreApplication::processEvents();                                   // layouts happen there
    waitForPicture(window);
    if (shot.prepare) {
        shot.prepare(window);
        QCoreApplication::processEvents();
    }
    const QString file =
        options.folder.filePath(shot.name + options.suffix + QStringLiteral(".png"));
    const bool saved = window.grabWindow().save(file);
    std::printf("%s %s\n", saved ? "saved" : "cannot save", qUtf8Printable(file));
    return saved;
}

std::optional<Options> parseOptions()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Saves a picture of every screen."));
    parser.addHelpOption();
    parser.addOption({QStringLiteral("frame"), QStringLiteral("What stands beside the form."),
                      QStringLiteral("file")});
    parser.addOption(
        {QStringLiteral("overlong"), QStringLiteral("Overlong texts in the smallest window.")});
    parser.addOption({QStringLiteral("suffix"), QStringLiteral("Ends the pictures' names."),
                      QStringLiteral("text")});
    parser.addPositionalArgument(QStringLiteral("folder"), QStringLiteral("Where to."));
    parser.process(*QCoreApplication::instance());
    if (parser.positionalArguments().size() != 1) {
        return std::nullopt;
    }
    Options options{.folder = QDir(parser.positionalArguments().constFirst()),
                    .frame = QFile::encodeName(parser.value(QStringLiteral("frame"))).toStdString(),
                    .overlong = parser.isSet(QStringLiteral("overlong")),
                    .suffix = parser.value(QStringLiteral("suffix"))};
    if (!options.frame.empty()) {
        options.frame = std::filesystem::absolute(options.frame);
    }
    return options;
}

} // namespace

int main(int argc, char **argv)
{
    // What is typed here is not to be offered to the user of this machine, nor the reverse.
    const QTemporaryDir settings;
    qputenv("XDG_CONFIG_HOME", settings.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QApplication application(argc, argv);
    QApplication::setApplicationVersion(QStringLiteral(QUILLMARK_VERSION));
    const std::optional<Options> options = parseOptions();
    if (!options || !options->folder.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "screenshots: give one folder that can be made\n");
        return EXIT_FAILURE;
    }

    QCursor::setPos(10'000, 10'000); // over nothing

    QQmlEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    QQmlComponent main(&engine, QUrl(QStringLiteral("qrc:/qt/qml/Quillmark/Main.qml")));
    const std::unique_ptr<QQuickWindow> window(qobject_cast<QQuickWindow *>(main.create()));
    if (!window) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(main.errorString()));
        return EXIT_FAILURE;
    }
    if (options->overlong) {
        window->resize(window->minimumSize());
    }

    bool saved = true;
    for (const Shot &shot :
         options->overlong ? overlongShots(options->frame) : everydayShots(options->frame)) {
        saved = save(*window, shot, *options) && saved;
        if (shot.name == QLatin1String("manual-entry-empty")) {
            LastUsedPayloadStore::save(samplePayload());
        }
    }
    return saved ? EXIT_SUCCESS : EXIT_FAILURE;
}
