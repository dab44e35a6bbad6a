// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/Accessibility.h"
#include "app/Memory.h"
#include "app/SessionBridge.h"

#include <QApplication>
#include <QEventLoop>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QSGRendererInterface>
#include <QTemporaryDir>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>
#include <utility>
#include <variant>

namespace quillmark::bench {

/// The program as main() sets it up, with settings of its own that go with it.
template <typename Application = QApplication>
class BenchApplication
{
public:
    BenchApplication(int &argc, char **argv) : m_application(prepared(m_settings, argc), argv)
    {
        QApplication::setQuitOnLastWindowClosed(false);
        installAccessibility();
    }

    Application &operator*() { return m_application; }

private:
    static int &prepared(const QTemporaryDir &settings, int &argc)
    {
        returnMemory();
        qputenv("XDG_CONFIG_HOME", settings.path().toLocal8Bit());
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
        return argc;
    }

    QTemporaryDir m_settings;
    Application m_application;
};

/// The program's one window, shown and drawn.
class BenchWindow
{
public:
    BenchWindow()
    {
        m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
        QQmlComponent main(&m_engine, QUrl(QStringLiteral("qrc:/qt/qml/Quillmark/Main.qml")));
        m_window.reset(qobject_cast<QQuickWindow *>(main.create()));
        if (!m_window) {
            throw std::runtime_error(main.errorString().toStdString());
        }
        m_session = m_window->findChild<SessionBridge *>();
        settle();
    }

    QQuickWindow &window() { return *m_window; }
    SessionBridge &session() { return *m_session; }
    void setState(IngestViewModel::State state)
    {
        m_session->viewModel().setState(std::move(state));
    }

    template <typename State>
    bool isIn() const
    {
        return std::holds_alternative<State>(m_session->viewModel().state());
    }

    /// Turns the event loop for as long as the session is in a state.
    template <typename State>
    void turnWhile()
    {
        turnUntil([this] { return !isIn<State>(); });
    }

    /// Lets everything happen that is due, and as much again.
    static void settle() { turnFor(std::chrono::milliseconds(100)); }

    /// Turns the event loop for a while.
    static void turnFor(std::chrono::milliseconds time)
    {
        QEventLoop loop;
        QTimer::singleShot(time, &loop, &QEventLoop::quit);
        loop.exec();
    }

    /// Turns the event loop until something has become true.
    static void turnUntil(const std::function<bool()> &over)
    {
        QEventLoop loop;
        QTimer watch;
        QObject::connect(&watch, &QTimer::timeout, &loop, [&] {
            if (over()) {
                loop.quit();
            }
        });
        watch.start(std::chrono::milliseconds(10));
        loop.exec();
    }

private:
    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    SessionBridge *m_session = nullptr;
};

} // namespace quillmark::bench
