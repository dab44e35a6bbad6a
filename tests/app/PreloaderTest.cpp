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
        m_dir.write("Other.qml", "import QtQuick\nItem {}");
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

    /// Loads a file at once. Files are loaded one after the other: those that were begun before
    /// are over then, and their events are handled.
    QString loadAtOnce(const char *name)
    {
        const QQmlComponent component(&m_engine, fileUrlFromPath(m_dir / name));
        QCoreApplication::processEvents();
        return component.errorString();
    }

    test::TempDir m_dir;
    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    Preloader *m_preloader = nullptr;
};

TEST_F(Preload, waitsForTheFirstFrame)
{
    ASSERT_NO_FATAL_FAILURE(open("import QtQuick\nItem {}"));
    EXPECT_TRUE(loadAtOnce("Other.qml").isEmpty());
    EXPECT_FALSE(m_preloader->isReady());

    m_window->show();
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_preloader->isReady(); }));
}

TEST_F(Preload, leavesAFileThatCannotBeLoadedToWhoeverNeedsIt)
{
    ASSERT_NO_FATAL_FAILURE(open("import QtQuick\nItem {"));
    m_window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(m_window.get()));
    EXPECT_FALSE(loadAtOnce("Later.qml").isEmpty());
    EXPECT_TRUE(loadAtOnce("Other.qml").isEmpty());
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
