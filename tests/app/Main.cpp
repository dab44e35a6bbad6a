// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/Accessibility.h"
#include "support/TempDir.h"

#include <QApplication>
#include <QtQml/qqmlextensionplugin.h>

#include <gtest/gtest.h>

#include <cstdlib>

Q_IMPORT_QML_PLUGIN(QuillmarkPlugin)

int main(int argc, char **argv)
{
    // No display, no desktop and none of the user's settings: every process has its own.
    const quillmark::test::TempDir home;
    ::setenv("XDG_CONFIG_HOME", home.path().c_str(), 1);
    ::setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    ::setenv("QT_QUICK_BACKEND", "software", 1);
    const QApplication application(argc, argv);
    quillmark::installAccessibility();
    QApplication::setQuitOnLastWindowClosed(false);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
