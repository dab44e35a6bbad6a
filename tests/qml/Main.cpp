// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/Accessibility.h"
#include "support/TempDir.h"

#include <QApplication>
#include <QFont>
#include <QObject>
#include <QQmlEngine>
#include <QtQml/qqmlextensionplugin.h>
#include <QtQuickTest>

#include <cstdlib>

Q_IMPORT_QML_PLUGIN(QuillmarkPlugin)

/// Lets the tests import the program's module.
class Setup : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void qmlEngineAvailable(QQmlEngine *engine)
    {
        engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
    }
};

int main(int argc, char **argv)
{
    // No display and none of the user's settings.
    const quillmark::test::TempDir home;
    ::setenv("XDG_CONFIG_HOME", home.path().c_str(), 1);
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    ::setenv("QT_QUICK_BACKEND", "software", 1);
    const QApplication application(argc, argv);
    if (const int points = qEnvironmentVariableIntValue("QUILLMARK_TEST_POINTS"); points > 0) {
        QFont font = QGuiApplication::font();
        font.setPointSize(points);
        QGuiApplication::setFont(font);
    }
    quillmark::installAccessibility();
    Setup setup;
    return quick_test_main_with_setup(argc, argv, "qml", QUICK_TEST_SOURCE_DIR, &setup);
}

#include "Main.moc"
