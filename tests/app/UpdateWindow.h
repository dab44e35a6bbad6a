// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/AccessibleWindow.h"
#include "app/UpdaterFixture.h"
#include "app/updates/UpdaterCoordinator.h"

#include <QAccessible>
#include <QString>
#include <QVariant>

#include <gtest/gtest.h>

#include <memory>

namespace quillmark::test {

inline const QString updateMenuItem = QStringLiteral("Check for Updates…");
/// The version that is published, and where its package lies.
inline const QString nextVersion = QStringLiteral("2.0");
inline const QString nextPackage = PublishedFeed::packagePath(nextVersion);

/// What has to be there before the window.
class WithCoordinator : protected UpdaterFixture
{
protected:
    explicit WithCoordinator(bool automatic)
    {
        m_coordinator =
            std::make_unique<UpdaterCoordinator>(configuration(automatic), surroundings());
        if (automatic) {
            m_server.hold(); // until the test has published something
        }
    }

    QVariantMap properties() const
    {
        return {{QStringLiteral("updates"), QVariant::fromValue(m_coordinator.get())}};
    }
    Updater &updater() { return *m_coordinator->controller()->updater(); }

    std::unique_ptr<UpdaterCoordinator> m_coordinator;
};

class UpdateWindow : protected WithCoordinator, public AccessibleWindow
{
protected:
    explicit UpdateWindow(bool automatic = false)
        : WithCoordinator(automatic), AccessibleWindow(properties())
    {}

    void choose()
    {
        key(Qt::Key_F10);
        press(one(updateMenuItem, QAccessible::MenuItem));
    }
    void chooseAndWait(Updater::Stage stage)
    {
        choose();
        ASSERT_TRUE(reaches(updater(), stage)) << qPrintable(updater().errorText());
    }
    bool isShown() const { return dialogs() == 1; }
    qsizetype dialogs() const
    {
        return all(QStringLiteral("Software Update"), QAccessible::Dialog).size();
    }
    bool shows(const QString &text) const { return all(text, QAccessible::StaticText).size() == 1; }
    QAccessibleInterface *button(const char *text) const
    {
        return one(QString::fromLatin1(text), QAccessible::Button);
    }
};

} // namespace quillmark::test
