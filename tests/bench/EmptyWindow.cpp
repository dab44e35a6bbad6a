// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// The floor for the program's start: an empty QML window with the same renderer. It is built once
// more with the application of Qt Widgets, whose library takes time to load.
//   bench-empty-window [text]    with one text in the window
//   bench-widgets-window [text]

#ifdef QUILLMARK_WITH_WIDGETS
#include <QApplication>
using Application = QApplication;
#else
#include <QGuiApplication>
using Application = QGuiApplication;
#endif
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

#include <memory>
#include <string_view>

int main(int argc, char **argv)
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const bool hasText = argc == 2 && std::string_view(argv[1]) == "text";
    const Application application(argc, argv);
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData(hasText ? R"(import QtQuick
                                Window {
                                    visible: true; width: 1000; height: 700
                                    Text { text: "Drop a folder of scans" }
                                })"
                              : R"(import QtQuick
                                Window { visible: true; width: 1000; height: 700 })",
                      QUrl());
    const std::unique_ptr<QObject> window(component.create());
    return Application::exec();
}
