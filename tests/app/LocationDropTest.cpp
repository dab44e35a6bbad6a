// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/LocationDrop.h"
#include "app/MainWindow.h"
#include "support/Printers.h"

#include <QDropEvent>
#include <QMimeData>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace quillmark {
namespace {

QUrl firstLocation(const char *uriList)
{
    QMimeData data;
    data.setData(QStringLiteral("text/uri-list"), uriList);
    return LocationDrop::firstLocation(data);
}

TEST(FirstLocation, isTheFirstOfSeveral)
{
    EXPECT_EQ(firstLocation("file:///rolls/1\r\nfile:///rolls/2\r\n"),
              QUrl(QStringLiteral("file:///rolls/1")));
    EXPECT_EQ(firstLocation("file:///rolls/1\nfile:///rolls/2"),
              QUrl(QStringLiteral("file:///rolls/1")));
    EXPECT_TRUE(firstLocation("https://example.org/1\r\nfile:///rolls/2\r\n").isEmpty());
}

TEST(FirstLocation, isNoComment)
{
    EXPECT_EQ(firstLocation("# two: rolls\r\n#\r\nfile:///rolls/1\r\n"),
              QUrl(QStringLiteral("file:///rolls/1")));
    EXPECT_TRUE(firstLocation("# file:///rolls/1\r\n").isEmpty());
}

TEST(FirstLocation, isOnThisMachine)
{
    EXPECT_FALSE(firstLocation("file:/rolls/1\r\n").isEmpty());
    EXPECT_FALSE(firstLocation("file://localhost/rolls/1\r\n").isEmpty());
    EXPECT_FALSE(firstLocation("file:///rolls/caf%E9%20%23/\r\n").isEmpty());
    EXPECT_TRUE(firstLocation("file://elsewhere/rolls/1\r\n").isEmpty());
    EXPECT_TRUE(firstLocation("file:rolls/1\r\n").isEmpty());
    EXPECT_TRUE(firstLocation("file:///rolls/%00\r\n").isEmpty());
    EXPECT_TRUE(firstLocation("/rolls/1\r\n").isEmpty());
    EXPECT_TRUE(firstLocation("\r\n").isEmpty());
    EXPECT_TRUE(firstLocation("").isEmpty());
}

TEST(FirstLocation, isNotFoundInOtherData)
{
    QMimeData data;
    data.setText(QStringLiteral("file:///rolls/1"));
    data.setImageData(QByteArrayLiteral("not a picture"));
    EXPECT_TRUE(LocationDrop::firstLocation(data).isEmpty());
}

class LocationDropInWindow : public test::MainWindow
{
protected:
    LocationDropInWindow()
    {
        m_data.setUrls({QUrl(QStringLiteral("file:///rolls/1"))});
        const QPoint middle(m_window->width() / 2, m_window->height() / 3);
        QDragEnterEvent enter(middle, Qt::CopyAction, &m_data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(m_window.get(), &enter);
    }

    QMimeData m_data;
    LocationDrop *m_drop = m_window->findChild<LocationDrop *>();
};

TEST_F(LocationDropInWindow, isCalmAgainWhenAnotherScreenIsShown)
{
    ASSERT_TRUE(m_drop->isHovered());
    const QSignalSpy changes(m_drop, &LocationDrop::hoveredChanged);
    setState(IngestViewModel::Error{});
    EXPECT_FALSE(m_drop->isHovered());
    EXPECT_EQ(changes.count(), 1);
    setState(IngestViewModel::Idle{});
    EXPECT_FALSE(m_drop->isHovered());
}

TEST_F(LocationDropInWindow, isCalmAgainWhenTheDragLeaves)
{
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(m_window.get(), &leave);
    EXPECT_FALSE(m_drop->isHovered());
}

} // namespace
} // namespace quillmark
