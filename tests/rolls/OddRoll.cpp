// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "rolls/OddRoll.h"

#include <algorithm>
#include <utility>

namespace quillmark::test {
namespace {

RasterImage smallPicture()
{
    RasterImage image{48, 32, 3, {}};
    for (int i = 0; i < image.width * image.height * image.channels; ++i) {
        image.samples.push_back(static_cast<std::uint16_t>(i * 1237 % 65536));
    }
    return image;
}

/// The bytes of a frame that shows a slate, which takes long to make.
const std::string &slateBytes()
{
    static const std::string bytes = [] {
        const TempDir place;
        return readFile(writeFrame(place / "slate.jpg", {slatePayloadToJson(fullPayload())}));
    }();
    return bytes;
}

} // namespace

std::string titleOf(const ::testing::TestParamInfo<BackupMode> &mode)
{
    std::string name = rawValue(mode.param).toStdString();
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

bool isTagged(const fs::path &file)
{
    return readFile(file).find("<quillmark:SessionId>") != std::string::npos;
}

std::string picturePart(const fs::path &file)
{
    const std::string bytes = readFile(file);
    const std::size_t scan = bytes.find("\xFF\xDA"); // no byte 0xFF occurs in UTF-8
    return scan == std::string::npos ? std::string() : bytes.substr(scan);
}

Permissions::Permissions(fs::path path, fs::perms permissions)
    : m_path(std::move(path)), m_before(fs::status(m_path).permissions())
{
    fs::permissions(m_path, permissions);
}

Permissions::~Permissions()
{
    std::error_code ignored;
    fs::permissions(m_path, m_before, ignored);
}

fs::path OddRoll::frame(const fs::path &name)
{
    fs::create_directories((roll / name).parent_path());
    writeJpeg(roll / name, smallPicture());
    remember(roll / name);
    return roll / name;
}

fs::path OddRoll::slate()
{
    roll.write("00.jpg", slateBytes());
    remember(roll / "00.jpg");
    return roll / "00.jpg";
}

std::string OddRoll::ingest(BackupMode mode)
{
    return ingest(mode, roll.path());
}

std::string OddRoll::ingest(BackupMode mode, const fs::path &folder)
{
    await(session.scan(folder));
    return run(mode);
}

std::string OddRoll::run(BackupMode mode)
{
    session.setBackupMode(mode);
    await(session.runIngest());
    if (const auto *error = std::get_if<Session::Error>(&session.state())) {
        return error->text.toStdString();
    }
    in<Session::Done>(session);
    return {};
}

void OddRoll::expectUntouched() const
{
    for (const auto &[file, content] : m_contents) {
        EXPECT_EQ(readFile(file), content) << file;
    }
}

void OddRoll::expectNothingLost(BackupMode mode) const
{
    for (const auto &[file, content] : m_contents) {
        if (readFile(file) == content) {
            continue;
        }
        EXPECT_NE(mode, BackupMode::writeCopies) << file << " has changed";
        EXPECT_TRUE(isTagged(file)) << file;
        EXPECT_EQ(picturePart(file), content.substr(content.find("\xFF\xDA"))) << file;
        if (mode == BackupMode::backupOriginals) {
            EXPECT_EQ(readFile(roll / "_originals" / file.filename()), content) << file;
        }
    }
}

void OddRoll::expectNoLeftovers(const fs::path &folder)
{
    for (const auto &entry : fs::recursive_directory_iterator(folder)) {
        const std::string name = entry.path().filename().native();
        EXPECT_FALSE(name.starts_with(".quillmark")) << entry.path();
        EXPECT_FALSE(name.ends_with("_exiftool_tmp")) << entry.path();
    }
}

} // namespace quillmark::test
