// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/ReferencePhoto.h"
#include "app/FileUrl.h"
#include "app/PictureReader.h"
#include "support/ImageFiles.h"
#include "support/Printers.h"
#include "support/TempDir.h"

#include <QPainter>
#include <QTest>

#include <gtest/gtest.h>

namespace quillmark {
namespace {

/// Red in its left half, blue in its right half.
test::RasterImage twoHalves(int width, int height)
{
    test::RasterImage image{.width = width, .height = height};
    for (int i = 0; i < width * height; ++i) {
        const bool left = i % width < width / 2;
        image.samples.insert(image.samples.end(), {static_cast<std::uint16_t>(left ? 65535 : 0), 0,
                                                   static_cast<std::uint16_t>(left ? 0 : 65535)});
    }
    return image;
}

bool isRed(QColor color)
{
    return color.red() > 200 && color.blue() < 60;
}
bool isBlue(QColor color)
{
    return color.blue() > 200 && color.red() < 60;
}

class Picture : public ::testing::Test
{
protected:
    test::TempDir m_dir;
};

TEST_F(Picture, isReadInColourAndScaled)
{
    const auto file = m_dir / "a.jpg";
    test::writeJpeg(file, twoHalves(600, 300));
    const QImage picture = readPicture(file, 200);
    ASSERT_EQ(picture.size(), QSize(200, 100));
    EXPECT_TRUE(isRed(picture.pixelColor(20, 50)));
    EXPECT_TRUE(isBlue(picture.pixelColor(180, 50)));
}

TEST_F(Picture, isNotEnlarged)
{
    const auto file = m_dir / "a.jpg";
    test::writeJpeg(file, twoHalves(60, 30));
    EXPECT_EQ(readPicture(file, 200).size(), QSize(60, 30));
}

TEST_F(Picture, isTurnedUpright)
{
    const auto file = m_dir / "a.jpg";
    test::writeJpeg(file, twoHalves(200, 100), {.orientation = 6});
    const QImage picture = readPicture(file, 200);
    ASSERT_EQ(picture.size(), QSize(100, 200));
    EXPECT_TRUE(isRed(picture.pixelColor(50, 20)));
    EXPECT_TRUE(isBlue(picture.pixelColor(50, 180)));
}

/// TIFF pictures go another way than JPEG pictures: both have to turn alike.
class PictureOrientation : public ::testing::TestWithParam<int>
{};

TEST_P(PictureOrientation, isTheSameForTiffAndJpeg)
{
    const test::TempDir dir;
    test::RasterImage image{.width = 64, .height = 32, .channels = 1};
    for (int i = 0; i < image.width * image.height; ++i) {
        // One quarter is dark: no two orientations look the same.
        const bool dark = i % image.width < 32 && i / image.width < 16;
        image.samples.push_back(dark ? 0 : 65535);
    }
    test::writeJpeg(dir / "a.jpg", image, {.orientation = GetParam()});
    test::writeTiff(dir / "a.tif", image, {.orientation = GetParam()});
    const QImage jpeg = readPicture(dir / "a.jpg", 64);
    const QImage tiff = readPicture(dir / "a.tif", 64);
    ASSERT_EQ(tiff.size(), jpeg.size());
    for (const double x : {0.25, 0.75}) {
        for (const double y : {0.25, 0.75}) {
            const QPoint point(static_cast<int>(x * tiff.width()),
                               static_cast<int>(y * tiff.height()));
            EXPECT_EQ(tiff.pixelColor(point).lightness() > 128,
                      jpeg.pixelColor(point).lightness() > 128)
                << x << " " << y;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, PictureOrientation, ::testing::Range(1, 9));

TEST_F(Picture, hasANameThatIsNotUtf8)
{
    const auto file = m_dir / "caf\xe9.jpg";
    test::writeJpeg(file, twoHalves(60, 30));
    EXPECT_FALSE(readPicture(file, 200).isNull());
}

TEST_F(Picture, isMissingWhereTheFileIsNone)
{
    EXPECT_TRUE(readPicture(m_dir.write("a.jpg", "no picture"), 200).isNull());
    EXPECT_TRUE(readPicture(m_dir.write("b.jpg", "\xff\xd8\xff\xe0 torn"), 200).isNull());
    EXPECT_TRUE(readPicture(m_dir / "absent.jpg", 200).isNull());
    EXPECT_TRUE(readPicture(m_dir.path(), 200).isNull());
}

TEST_F(Picture, fillsItsItemWithProportionsKept)
{
    const auto file = m_dir / "a.jpg";
    test::writeJpeg(file, twoHalves(100, 50));
    ReferencePhoto photo;
    photo.setSize({200, 300});
    EXPECT_TRUE(photo.isEmpty());
    photo.setSource(fileUrlFromPath(file));
    EXPECT_FALSE(photo.isEmpty());
    ASSERT_TRUE(QTest::qWaitFor([&] { return !photo.picture().isNull(); }));

    QImage canvas(200, 300, QImage::Format_RGB32);
    canvas.fill(Qt::black);
    QPainter painter(&canvas);
    photo.paint(&painter);
    EXPECT_EQ(canvas.pixelColor(100, 99), QColor(Qt::black));
    EXPECT_TRUE(isRed(canvas.pixelColor(2, 102)));
    EXPECT_TRUE(isBlue(canvas.pixelColor(197, 197)));
    EXPECT_EQ(canvas.pixelColor(100, 201), QColor(Qt::black));
}

TEST_F(Picture, givesWayToTheNextOne)
{
    const auto file = m_dir / "a.jpg";
    test::writeJpeg(file, twoHalves(100, 50));
    ReferencePhoto photo;
    photo.setSource(fileUrlFromPath(file));
    photo.setSource(fileUrlFromPath(m_dir.write("b.jpg", "no picture")));
    EXPECT_TRUE(QTest::qWaitFor([&] { return photo.isEmpty(); }));
    photo.setSource(fileUrlFromPath(file));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !photo.picture().isNull(); }));
    photo.setSource(QUrl());
    EXPECT_TRUE(photo.isEmpty());
}

} // namespace
} // namespace quillmark
