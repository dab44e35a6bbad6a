// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ingest/SessionFixture.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace quillmark::test {

/// The name of a mode as a test's title.
std::string titleOf(const ::testing::TestParamInfo<BackupMode> &mode);

/// Whether a file holds the private namespace.
bool isTagged(const fs::path &file);

/// A file's content without what a run adds: the pixels as they are stored.
std::string picturePart(const fs::path &file);

/// Takes permissions away while it lives.
class Permissions
{
public:
    Permissions(fs::path path, fs::perms permissions);
    Permissions(const Permissions &) = delete;
    Permissions &operator=(const Permissions &) = delete;
    ~Permissions();

private:
    fs::path m_path;
    fs::perms m_before;
};

/// Runs over rolls that hold more than well-named frames.
class OddRoll : public SessionTest
{
protected:
    /// A frame of the roll, whose content is remembered. The slate is "00.jpg".
    fs::path frame(const fs::path &name);
    fs::path slate();

    /// Remembers a file's content.
    void remember(const fs::path &file) { m_contents[file] = readFile(file); }
    const std::string &contentOf(const fs::path &file) const { return m_contents.at(file); }

    /// Scans the roll and, where it has a plan, runs it. Gives the text of the error that it
    /// ends with; empty where it is done.
    std::string ingest(BackupMode mode);
    std::string ingest(BackupMode mode, const fs::path &folder);
    /// Runs the plan that there is.
    std::string run(BackupMode mode);

    /// What is remembered has the same bytes as then.
    void expectUntouched() const;
    /// What is remembered is untouched, or tagged with its picture unchanged; and in mode
    /// backupOriginals, in the latter case, there are its bytes in "_originals".
    void expectNothingLost(BackupMode mode) const;
    /// No unfinished file is left anywhere in the folder.
    static void expectNoLeftovers(const fs::path &folder);

private:
    std::map<fs::path, std::string> m_contents;
};

} // namespace quillmark::test
