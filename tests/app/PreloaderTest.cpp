// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/Preloader.h"
#include "app/FileUrl.h"
#include "app/MainWindow.h"
#include "support/TempDir.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>
#include <string_view>

namespace quillmark {
namespace {

class Preload : public ::testing::Test
{
protected:
    /// A window that is not shown yet, which loads a file that lies beside its own.
    void open(std::string_view content)
    {
        m_dir.write("Later.qml", content);
        m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
        QQmlComponent component(&m_engine);
        component.setData(R"(import QtQuick
                             import Quillmark
                             Window { id: root; Preloader { window: root; files: ["Later.qml"] } })",
                          fileUrlFromPath(m_dir / "Window.qml"));
        m_window.reset(qobject_cast<QQuickWindow *>(component.create()));
        ASSERT_TRUE(m_window) << component.errorString().toStdString();
        m_preloader = m_window->findChild<Preloader *>();
    }

    test::TempDir m_dir;
    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    Preloader *m_preloader = nullptr;
};

TEST_F(Preload, waitsForTheFirstFrame)
{
    ASSERT_NO_FATAL_FAILURE(open("import QtQuick\nItem {}"));
    QCoreApplication::processEvents();
    EXPECT_FALSE(m_preloader->isReady());

    m_window->show();
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_preloader->isReady(); }));
}

TEST_F(Preload, leavesAFileThatCannotBeLoadedToWhoeverNeedsIt)
{
    ASSERT_NO_FATAL_FAILURE(open("import QtQuick\nItem {"));
    bool tried = false;
    QObject::connect(m_preloader, &Preloader::readyChanged, m_preloader, [&] { tried = true; });
    m_window->show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return tried; }));
    EXPECT_FALSE(m_preloader->isReady());
}

class PreloadInTheWindow : public test::MainWindow
{};

TEST_F(PreloadInTheWindow, findsItsScreens)
{
    const auto *preloader = m_window->findChild<Preloader *>();
    ASSERT_TRUE(preloader);
    EXPECT_TRUE(QTest::qWaitFor([&] { return preloader->isReady(); }));
}

} // namespace
} // namespace quillmark
