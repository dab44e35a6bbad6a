// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// screenshots FOLDER: saves a picture of every screen, at the usual and at the smallest size
// of the window, with everyday and with overlong texts. Needs no display.

#include "app/SessionBridge.h"

#include <QApplication>
#include <QDir>
#include <QImage>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QtQml/qqmlextensionplugin.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

Q_IMPORT_QML_PLUGIN(QuillmarkPlugin)

namespace {

using namespace quillmark;
using Session = IngestViewModel;

struct Shot {
    QString name;
    Session::State state;
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

std::vector<Shot> shots(const QString &suffix, const std::string &folderName,
                        const SlatePayload &payload, const QString &error)
{
    const std::filesystem::path folder = "/rolls/" + folderName;
    const IngestPlan plan{.folder = folder,
                          .detection = {folder / (folderName + ".jpg"), payload, QString()},
                          .rollFiles = std::vector<std::filesystem::path>(36),
                          .backupMode = BackupMode::backupOriginals};
    const IngestOutcome outcome{plan, plan.rollFiles, plan.rollFiles};
    std::vector<Shot> all{
        {QStringLiteral("idle"), Session::Idle{}},
        {QStringLiteral("scanning"), Session::Scanning{folder}},
        {QStringLiteral("ready"), Session::Ready{plan}},
        {QStringLiteral("detection-failed"), Session::DetectionFailed{folder, 36}},
        {QStringLiteral("manual-entry"), Session::ManualEntry{folder, std::nullopt}},
        {QStringLiteral("manual-entry-frame"), Session::ManualEntry{folder, plan.detection.file}},
        {QStringLiteral("writing"), Session::Writing{plan}},
        {QStringLiteral("done"), Session::Done{outcome}},
        {QStringLiteral("error"), Session::Error{error}},
    };
    for (Shot &shot : all) {
        shot.name += suffix;
    }
    return all;
}

/// Every screen with the texts of an ordinary roll.
std::vector<Shot> everydayShots()
{
    return shots({}, "Roll-12", samplePayload(),
                 QStringLiteral("exiftool failed (exit 1): Error: File not found - a.jpg"));
}

/// Every screen with texts as long as file systems and slates allow.
std::vector<Shot> overlongShots()
{
    SlatePayload payload = samplePayload();
    payload.notes = QStringLiteral("A long note about light and fog. ").repeated(30);
    payload.cameraModel = QString(200, QLatin1Char('K'));
    return shots(QStringLiteral("-long"), std::string(200, 'm'), payload,
                 QStringLiteral("Error: File format error - a.jpg\n").repeated(100));
}

bool save(QQuickWindow &window, const QDir &folder, const Shot &shot, QSize size)
{
    window.resize(size);
    window.findChild<SessionBridge *>()->viewModel().setState(shot.state);
    QCoreApplication::processEvents(); // resizing and layouts happen there
    const QString file = folder.filePath(
        QStringLiteral("%1-%2x%3.png").arg(shot.name).arg(size.width()).arg(size.height()));
    const bool saved = window.grabWindow().save(file);
    std::printf("%s %s\n", saved ? "saved" : "cannot save", qUtf8Printable(file));
    return saved;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: screenshots FOLDER\n");
        return EXIT_FAILURE;
    }
    // The form is to start empty, whatever was typed on this machine before.
    const QTemporaryDir settings;
    qputenv("XDG_CONFIG_HOME", settings.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QApplication application(argc, argv);
    const QDir folder(QFile::decodeName(argv[1]));
    if (!folder.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "cannot make %s\n", argv[1]);
        return EXIT_FAILURE;
    }

    QQmlEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    QQmlComponent main(&engine, QUrl(QStringLiteral("qrc:/qt/qml/Quillmark/Main.qml")));
    const std::unique_ptr<QQuickWindow> window(qobject_cast<QQuickWindow *>(main.create()));
    if (!window) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(main.errorString()));
        return EXIT_FAILURE;
    }

    bool saved = true;
    const QSize usual = window->size();
    for (const Shot &shot : everydayShots()) {
        saved = save(*window, folder, shot, usual) && saved;
        saved = save(*window, folder, shot, window->minimumSize()) && saved;
    }
    for (const Shot &shot : overlongShots()) {
        saved = save(*window, folder, shot, window->minimumSize()) && saved;
    }
    return saved ? EXIT_SUCCESS : EXIT_FAILURE;
}
