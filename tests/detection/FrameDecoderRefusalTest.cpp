// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FrameDecoder.h"
#include "detection/FramePictures.h"
#include "detection/SlateDetectionError.h"
#include "detection/TiffBytes.h"
#include "support/ImageFiles.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <string_view>

namespace quillmark::test {
namespace {

/// The description of the refusal; empty where the file decodes.
QString refusal(const std::filesystem::path &file)
{
    try {
        decodeFrame(file);
        return {};
    } catch (const SlateDetectionError &error) {
        EXPECT_EQ(error.which(), SlateDetectionError::Case::imageDecodeFailed);
        return error.description();
    }
}

TEST(FrameDecoder, refusesATextFileByItsName)
{
    const TempDir folder;

    EXPECT_EQ(refusal(folder.write("x.jpg", "This is not a picture.\n")),
              QStringLiteral("Could not decode image: x.jpg"));
}

TEST(FrameDecoder, refusesWhatIsNoPicture)
{
    using namespace std::string_literals;
    const TempDir folder;
    for (const std::string &bytes :
         {""s, "\xFF"s, "\xFF\xD8"s, "\xFF\xD8\xFF"s, "\xFF\xD8\xFF\xD9"s, "II*\0"s,
          "MM\0*\0\0\0\10"s, "II+\0\10\0\0\0"s, "II*\0\xFF\xFF\xFF\xFF"s, "\x89PNG\r\n\x1A\n"s,
          "\xFF\xD8\xFF"s + std::string(5000, '\xFF'), "II*\0\10\0\0\0"s + std::string(5000, 0)}) {
        EXPECT_FALSE(refusal(folder.write("x.tif", bytes)).isEmpty()) << bytes.size();
    }
}

TEST(FrameDecoder, refusesWhatIsNoRegularFile)
{
    const TempDir folder;
    std::filesystem::create_directory(folder / "folder.jpg");
    ASSERT_EQ(::mkfifo((folder / "pipe.jpg").c_str(), 0600), 0);
    std::filesystem::create_symlink("/dev/zero", folder / "device.jpg");
    std::filesystem::create_symlink("nowhere", folder / "dangling.jpg");

    for (const char *name :
         {"folder.jpg", "pipe.jpg", "device.jpg", "dangling.jpg", "missing.jpg"}) {
        EXPECT_EQ(refusal(folder / name),
                  QStringLiteral("Could not decode image: ") + QString::fromLatin1(name));
    }
}

TEST(FrameDecoder, followsALinkToAPicture)
{
    const TempDir folder;
    writeJpeg(folder / "real.jpg", greyPicture());
    std::filesystem::create_symlink("real.jpg", folder / "link.jpg");

    EXPECT_EQ(decodeFrame(folder / "link.jpg").luma.pixels,
              decodeFrame(folder / "real.jpg").luma.pixels);
}

TEST(FrameDecoder, opensNamesThatAreNoText)
{
    const TempDir folder;
    const std::filesystem::path file = folder / "\xE9t\xE9.jpg";
    writeJpeg(file, greyPicture());

    EXPECT_EQ(decodeFrame(file).luma.width, greyPicture().width);
}

/// Sets the size in the frame header of a JPEG file (ITU-T T.81, B.2.2).
void setJpegSize(std::string &bytes, int width, int height)
{
    std::size_t header = bytes.find("\xFF\xC0");
    if (header == std::string::npos) {
        header = bytes.find("\xFF\xC2");
    }
    bytes.at(header + 5) = static_cast<char>(height >> 8);
    bytes.at(header + 6) = static_cast<char>(height & 0xFF);
    bytes.at(header + 7) = static_cast<char>(width >> 8);
    bytes.at(header + 8) = static_cast<char>(width & 0xFF);
}

/// The most memory that the process has held so far.
long peakMegabytes()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

TEST(FrameDecoder, refusesHugeJpegsAtNoCost)
{
    const TempDir folder;
    for (const bool progressive : {false, true}) {
        writeJpeg(folder / "small.jpg", colourPicture(), {.progressive = progressive});
        for (const auto &[width, height] :
             {std::pair{65500, 65500}, {40000, 25001}, {30000, 30000}, {65500, 2000}}) {
            std::string bytes = readFile(folder / "small.jpg");
            setJpegSize(bytes, width, height);
            const long before = peakMegabytes();

            EXPECT_FALSE(refusal(folder.write("huge.jpg", bytes)).isEmpty());
            EXPECT_LT(peakMegabytes() - before, 50);
        }
    }
}

TEST(FrameDecoder, refusesHugeTiffsAtNoCost)
{
    const TempDir folder;
    for (const TiffCompression compression :
         {TiffCompression::none, TiffCompression::lzw, TiffCompression::deflate}) {
        writeTiff(folder / "small.tif", colourPicture(),
                  {.compression = compression, .rowsPerStrip = 0});
        for (const auto &[width, height] : {std::pair{0x7FFFFFFFU, 0x7FFFFFFFU},
                                            {40000U, 25001U},
                                            {30000U, 30000U},
                                            {1000000000U, 1U},
                                            {1U, 1000000000U}}) {
            std::string bytes = readFile(folder / "small.tif");
            TiffBytes(bytes).setEntry(widthTag, 4, width);
            TiffBytes(bytes).setEntry(lengthTag, 4, height);
            TiffBytes(bytes).setEntry(rowsPerStripTag, 4, height);
            const long before = peakMegabytes();

            EXPECT_FALSE(refusal(folder.write("huge.tif", bytes)).isEmpty());
            EXPECT_LT(peakMegabytes() - before, 50);
        }
    }
}

TEST(FrameDecoder, readsTheBeginningOfALargeJpeg)
{
    const TempDir folder;
    writeJpeg(folder / "small.jpg", greyPicture());
    std::string bytes = readFile(folder / "small.jpg");
    setJpegSize(bytes, greyPicture().width, 30000);

    const LumaImage luma = decodeFrame(folder.write("large.jpg", bytes)).luma;

    EXPECT_LT(difference(luma, expectedLuma(greyPicture()), 0, 100).mean, 3);
    EXPECT_TRUE(isMidGrey(luma, 200, 30000));
}

TEST(FrameDecoder, saysNothingOnTheErrorStream)
{
    const TempDir folder;
    writeTiff(folder / "a.tif", colourPicture(), {.compression = TiffCompression::lzw});
    std::string tiff = readFile(folder / "a.tif");
    const ByteRange strip = tiffBlocks(folder / "a.tif").at(1);
    tiff.replace(strip.offset, strip.size, strip.size, '\xFF');
    TiffBytes(tiff).setEntry(orientationTag - 1, 0, 0); // an unknown type
    writeJpeg(folder / "b.jpg", colourPicture());
    std::string jpeg = readFile(folder / "b.jpg");
    jpeg.replace(jpeg.size() / 2, 60, 60, '\x33');

    ::testing::internal::CaptureStderr();
    refusal(folder.write("a.tif", tiff));
    refusal(folder.write("b.jpg", jpeg));
    refusal(folder.write("c.tif", tiff.substr(0, 3000)));
    refusal(folder.write("d.jpg", jpeg.substr(0, 300)));
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

} // namespace
} // namespace quillmark::test
