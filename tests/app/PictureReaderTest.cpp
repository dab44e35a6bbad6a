// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/PictureReader.h"
#include "app/TwoHalves.h"
#include "base/UniqueFd.h"
#include "support/ImageFiles.h"
#include "support/Printers.h"
#include "support/TempDir.h"

#include <QColor>
#include <QFile>

#include <gtest/gtest.h>

#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillmark {
namespace {

class PictureReader : public ::testing::Test
{
protected:
    test::TempDir m_dir;
};

TEST_F(PictureReader, readsJpegAndTiffInColourAndScaled)
{
    test::writeJpeg(m_dir / "a", test::twoHalves(600, 300));
    test::writeTiff(m_dir / "b", test::twoHalves(600, 300), {.bits = 16});
    for (const char *name : {"a", "b"}) {
        const QImage picture = readPicture(m_dir / name, {200, 1000});
        ASSERT_EQ(picture.size(), QSize(200, 100)) << name;
        EXPECT_TRUE(test::isRed(picture.pixelColor(20, 50))) << name;
        EXPECT_TRUE(test::isBlue(picture.pixelColor(180, 50))) << name;
    }
}

TEST_F(PictureReader, takesNoInfraredForTransparency)
{
    test::writeTiff(m_dir / "a.tif", test::twoHalves(60, 30), {.bits = 16, .extraChannels = 1});
    const QImage picture = readPicture(m_dir / "a.tif", {200, 200});
    ASSERT_EQ(picture.size(), QSize(60, 30));
    EXPECT_FALSE(picture.hasAlphaChannel());
    EXPECT_EQ(picture.pixelColor(10, 10), QColor(255, 0, 0));
    EXPECT_EQ(picture.pixelColor(50, 10), QColor(0, 0, 255));
}

TEST_F(PictureReader, doesNotEnlarge)
{
    test::writeJpeg(m_dir / "a.jpg", test::twoHalves(60, 30));
    EXPECT_EQ(readPicture(m_dir / "a.jpg", {200, 200}).size(), QSize(60, 30));
}

TEST_F(PictureReader, turnsUpright)
{
    test::writeJpeg(m_dir / "a", test::twoHalves(200, 100), {.orientation = 6});
    test::writeTiff(m_dir / "b", test::twoHalves(200, 100), {.orientation = 6});
    for (const char *name : {"a", "b"}) {
        const QImage picture = readPicture(m_dir / name, {100, 100});
        ASSERT_EQ(picture.size(), QSize(50, 100)) << name;
        EXPECT_TRUE(test::isRed(picture.pixelColor(25, 10))) << name;
        EXPECT_TRUE(test::isBlue(picture.pixelColor(25, 90))) << name;
    }
}

TEST_F(PictureReader, readsOtherKindsOfPictures)
{
    QImage image(60, 30, QImage::Format_ARGB32);
    image.fill(Qt::red);
    for (const char *format : {"png", "bmp", "ppm"}) {
        const auto file = m_dir / "picture";
        QFile device(QFile::decodeName(file.c_str()));
        ASSERT_TRUE(device.open(QIODevice::WriteOnly) && image.save(&device, format)) << format;
        device.close();
        const QImage whole = readPicture(file, {200, 200});
        ASSERT_EQ(whole.size(), QSize(60, 30)) << format;
        EXPECT_EQ(whole.pixelColor(30, 15), QColor(Qt::red)) << format;
        EXPECT_EQ(readPicture(file, {30, 200}).size(), QSize(30, 15)) << format;
        EXPECT_EQ(readPicture(file, {200, 10}).size(), QSize(20, 10)) << format;
    }
}

TEST_F(PictureReader, takesNamesThatAreNoText)
{
    const auto file = m_dir / "caf\xe9.jpg";
    test::writeJpeg(file, test::twoHalves(60, 30));
    EXPECT_FALSE(readPicture(file, {200, 200}).isNull());
    QImage image(6, 3, QImage::Format_RGB32);
    image.fill(Qt::red);
    ASSERT_TRUE(image.save(QFile::decodeName((m_dir / "a.png").c_str())));
    std::filesystem::rename(m_dir / "a.png", m_dir / "caf\xe9.png");
    EXPECT_FALSE(readPicture(m_dir / "caf\xe9.png", {200, 200}).isNull());
}

TEST_F(PictureReader, takesNothingFromAPipe)
{
    QImage image(6, 3, QImage::Format_RGB32);
    image.fill(Qt::red);
    ASSERT_TRUE(image.save(QFile::decodeName((m_dir / "a.png").c_str())));
    const std::string picture = test::readFile(m_dir / "a.png");
    const auto pipe = m_dir / "pipe.png";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const UniqueFd ends(::open(pipe.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
    ASSERT_EQ(::write(ends.get(), picture.data(), picture.size()),
              static_cast<ssize_t>(picture.size()));

    EXPECT_TRUE(readPicture(pipe, {200, 200}).isNull());

    std::string left(picture.size() + 1, '\0');
    EXPECT_EQ(::read(ends.get(), left.data(), left.size()), static_cast<ssize_t>(picture.size()));
}

TEST_F(PictureReader, givesNothingWhereThereIsNoPicture)
{
    const QSize any(200, 200);
    EXPECT_TRUE(readPicture(m_dir.write("a.jpg", "no picture"), any).isNull());
    EXPECT_TRUE(readPicture(m_dir.write("b.jpg", "\xff\xd8\xff\xe0 torn"), any).isNull());
    EXPECT_TRUE(readPicture(m_dir / "absent.jpg", any).isNull());
    EXPECT_TRUE(readPicture(m_dir.path(), any).isNull());
}

} // namespace
} // namespace quillmark
