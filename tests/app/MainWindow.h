// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/SessionBridge.h"
#include "support/StoredSettings.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QVariantMap>

#include <gtest/gtest.h>

#include <algorithm>
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

    /// Every item that is shown.
    QList<QQuickItem *> shownItems() const
    {
        QList<QQuickItem *> items{m_window->contentItem()};
        for (qsizetype i = 0; i < items.size(); ++i) {
            for (QQuickItem *child : items.at(i)->childItems()) {
                if (child->isVisible()) {
                    items.append(child);
                }
            }
        }
        return items;
    }
    bool shows(const QString &text) const
    {
        const auto items = shownItems();
        return std::any_of(items.begin(), items.end(), [&](const QQuickItem *item) {
            return item->property("text").toString() == text;
        });
    }

    /// Nothing that is seen reaches beyond the window, or beyond what clips it.
    void expectAllInside()
    {
        QTest::qWait(0); // layouts settle with the event loop
        for (const QQuickItem *item : shownItems()) {
            QRectF room(0, 0, m_window->width(), m_window->height());
            bool scrolled = false;
            for (const auto *above = item->parentItem(); above; above = above->parentItem()) {
                scrolled = scrolled || above->clip();
            }
            const bool drawn = item->flags().testFlag(QQuickItem::ItemHasContents);
            if (drawn && !scrolled && item->width() > 0 && !item->boundingRect().isEmpty()) {
                const QRectF rect = item->mapRectToScene(item->boundingRect());
                EXPECT_TRUE(room.contains(rect))
                    << item->metaObject()->className() << " "
                    << item->property("text").toString().left(40).toStdString() << " at "
                    << rect.x() << "," << rect.y() << " " << rect.width() << "x" << rect.height();
            }
        }
    }

    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    SessionBridge *m_session = nullptr;
};

} // namespace quillmark::test
