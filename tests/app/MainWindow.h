// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/SessionBridge.h"
#include "support/StoredSettings.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QTest>
#include <QVariantMap>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <utility>

namespace quillmark::test {

/// The whole window, as the program makes it.
class MainWindow : public ::testing::Test
{
protected:
    /// Made with these properties.
    explicit MainWindow(const QVariantMap &properties = {})
    {
        // The form is to start empty, whatever another test typed.
        forgetSettings();
        m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
        QQmlComponent main(&m_engine, QUrl(QStringLiteral("qrc:/qt/qml/Quillmark/Main.qml")));
        m_window.reset(qobject_cast<QQuickWindow *>(main.createWithInitialProperties(properties)));
        if (!m_window) {
            throw std::runtime_error(main.errorString().toStdString());
        }
        m_session = m_window->findChild<SessionBridge *>();
        m_window->requestActivate();
        if (!QTest::qWaitForWindowActive(m_window.get())) {
            throw std::runtime_error("the window does not appear");
        }
    }

    void setState(IngestViewModel::State state)
    {
        m_session->viewModel().setState(std::move(state));
    }

    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    SessionBridge *m_session = nullptr;
};

} // namespace quillmark::test
