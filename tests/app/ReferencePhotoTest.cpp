// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/ReferencePhoto.h"
#include "app/FileUrl.h"
#include "app/TwoHalves.h"
#include "base/Background.h"
#include "support/ImageFiles.h"
#include "support/LargeTiff.h"
#include "support/Printers.h"
#include "support/TempDir.h"

#include <QQuickWindow>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <random>
#include <string>

namespace quillmark {
namespace {

class Photo : public ::testing::Test
{
protected:
    Photo()
    {
        m_window.resize(500, 400);
        m_window.setColor(Qt::black);
        m_window.show();
        m_photo = new ReferencePhoto(m_window.contentItem());
        QObject::connect(m_photo, &ReferencePhoto::pictureChanged, m_photo,
                         [this] { ++m_changes; });
    }

    std::filesystem::path jpeg(int width, int height)
    {
        auto file = m_dir / (std::to_string(width) + ".jpg");
        test::writeJpeg(file, test::twoHalves(width, height));
        return file;
    }
    std::filesystem::path largeScan()
    {
        auto file = m_dir / "large.tif";
        test::writeLargeTiff(file, 12000, 8400); // 100 megapixels
        return file;
    }
    void show(const std::filesystem::path &file) { m_photo->setSource(fileUrlFromPath(file)); }
    bool waitForPicture()
    {
        return QTest::qWaitFor([this] { return !m_photo->picture().isNull(); }, 30'000);
    }
    bool waitForWidth(double units)
    {
        return QTest::qWaitFor([&] { return m_photo->picture().width() == pixels(units); }, 30'000);
    }
    double ratio() const { return m_window.effectiveDevicePixelRatio(); }
    /// A length in the pixels of the screen.
    int pixels(double units) const { return qRound(units * ratio()); }
    /// What is seen at a place of the window.
    QColor seenAt(double x, double y)
    {
        return m_window.grabWindow().pixelColor(pixels(x), pixels(y));
    }

    test::TempDir m_dir;
    QQuickWindow m_window;
    ReferencePhoto *m_photo = nullptr;
    int m_changes = 0;
};

TEST_F(Photo, isReadAtTheSizeOfItsBox)
{
    m_photo->setSize({200, 300});
    show(jpeg(1200, 600));
    ASSERT_TRUE(waitForPicture());
    EXPECT_EQ(m_photo->picture().size(), QSize(pixels(200), pixels(100)));
}

TEST_F(Photo, waitsForItsBox)
{
    show(jpeg(1200, 600));
    m_window.grabWindow();
    EXPECT_FALSE(m_photo->isEmpty());
    EXPECT_TRUE(m_photo->picture().isNull());
    m_photo->setSize({200, 300});
    ASSERT_TRUE(waitForPicture());
    EXPECT_EQ(m_photo->picture().width(), pixels(200));
}

TEST_F(Photo, isSeenInTheMiddleWithProportionsKept)
{
    for (const int width : {100, 1000}) { // smaller and larger than the box
        m_photo->setPosition({20, 30});
        m_photo->setSize({200, 300});
        show(jpeg(width, width / 2));
        ASSERT_TRUE(waitForPicture());
        EXPECT_EQ(seenAt(120, 127), QColor(Qt::black)) << width;
        EXPECT_TRUE(test::isRed(seenAt(22, 133))) << width;
        EXPECT_TRUE(test::isRed(seenAt(22, 227))) << width;
        EXPECT_TRUE(test::isBlue(seenAt(217, 133))) << width;
        EXPECT_TRUE(test::isBlue(seenAt(217, 227))) << width;
        EXPECT_EQ(seenAt(120, 233), QColor(Qt::black)) << width;
        EXPECT_EQ(seenAt(222, 180), QColor(Qt::black)) << width;
    }
}

TEST_F(Photo, isSeenPixelByPixel)
{
    test::RasterImage image{.width = 1200, .height = 900};
    std::mt19937 random(3);
    std::uniform_int_distribution<int> any(0, 65535);
    for (int i = 0; i < 3 * image.width * image.height; ++i) {
        image.samples.push_back(static_cast<std::uint16_t>(any(random)));
    }
    test::writeTiff(m_dir / "a.tif", image);
    for (const double x : {0.0, 7.0, 11.3}) {
        m_photo->setPosition({x, 3});
        m_photo->setSize({201, 171});
        show(m_dir / "a.tif");
        ASSERT_TRUE(waitForPicture());
        const QImage seen = m_window.grabWindow().convertToFormat(QImage::Format_RGB32);
        // Somewhere within a pixel of where the middle is.
        const QSize size = m_photo->picture().size();
        const QPoint expected(pixels(x + (201 - size.width() / ratio()) / 2),
                              pixels(3 + (171 - size.height() / ratio()) / 2));
        bool found = false;
        for (int dx = -1; dx <= 1; ++dx) {
            for (int dy = -1; dy <= 1; ++dy) {
                QImage part = seen.copy(QRect(expected + QPoint(dx, dy), size));
                part.setDevicePixelRatio(1);
                found = found || part == m_photo->picture();
            }
        }
        EXPECT_TRUE(found) << x;
        m_photo->setSource(QUrl());
    }
}

TEST_F(Photo, isReadAgainForALargerBox)
{
    m_photo->setSize({100, 100});
    show(jpeg(1200, 600));
    ASSERT_TRUE(waitForPicture());
    bool lost = false;
    QObject::connect(m_photo, &ReferencePhoto::pictureChanged, m_photo,
                     [&] { lost = lost || m_photo->picture().isNull(); });
    m_photo->setSize({300, 300});
    EXPECT_TRUE(test::isRed(seenAt(5, 80))); // meanwhile, the one at hand
    EXPECT_TRUE(waitForWidth(300));
    EXPECT_FALSE(lost);
    EXPECT_EQ(m_changes, 3); // none, small, large
    m_photo->setSize({80, 80});
    EXPECT_TRUE(waitForWidth(80)); // many times smaller: pixels would be passed over
}

TEST_F(Photo, isReadOnceForABoxThatGrowsInSteps)
{
    m_photo->setSize({100, 100});
    show(jpeg(1200, 600));
    ASSERT_TRUE(waitForPicture());
    for (int side = 110; side <= 300; side += 10) {
        m_photo->setSize({side * 1.0, side * 1.0});
        QCoreApplication::processEvents();
    }
    EXPECT_TRUE(waitForWidth(300));
    EXPECT_LT(m_changes, 10); // 4, but a slow machine may take a rest in between
}

TEST_F(Photo, givesWayToTheNextOne)
{
    m_photo->setSize({200, 200});
    show(jpeg(100, 50));
    show(m_dir.write("b.jpg", "no picture"));
    EXPECT_FALSE(m_photo->isEmpty());
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_photo->isEmpty(); }));
    show(jpeg(100, 50));
    ASSERT_TRUE(waitForPicture());
    m_photo->setSource(QUrl());
    EXPECT_TRUE(m_photo->isEmpty());
    EXPECT_EQ(seenAt(50, 100), QColor(Qt::black));
}

TEST_F(Photo, dropsAPictureThatCameTooLate)
{
    m_photo->setSize({300, 300});
    show(largeScan());
    m_window.grabWindow(); // reading begins
    show(jpeg(90, 30));
    ASSERT_TRUE(waitForPicture());
    waitForBackground();
    QCoreApplication::processEvents();
    EXPECT_EQ(m_photo->picture().size(), QSize(90, 30));
}

TEST_F(Photo, leavesTheMainThreadFreeWhileALargeScanIsRead)
{
    int turns = 0;
    QTimer ticking;
    QObject::connect(&ticking, &QTimer::timeout, m_photo,
                     [&] { turns += m_photo->picture().isNull() ? 1 : 0; });
    ticking.start(std::chrono::milliseconds(1));
    m_photo->setSize({300, 300});
    show(largeScan());
    ASSERT_TRUE(waitForPicture());
    EXPECT_EQ(m_photo->picture().size(), QSize(pixels(300), pixels(210)));
    EXPECT_GE(turns, 10);
}

TEST_F(Photo, mayGoWhileItIsRead)
{
    m_photo->setSize({300, 300});
    show(largeScan());
    m_window.grabWindow();
    delete m_photo;
    waitForBackground();
    QCoreApplication::processEvents();
}

} // namespace
} // namespace quillmark
