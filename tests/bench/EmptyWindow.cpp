// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// The floor for the program's start: an empty QML window with the same renderer.

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

int main(int argc, char **argv)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    QQmlApplicationEngine engine;
    engine.loadData("import QtQuick\nWindow { visible: true; width: 1000; height: 700 }\n");
    return QGuiApplication::exec();
}
