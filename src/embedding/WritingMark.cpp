// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "embedding/WritingMark.h"

#include "base/Uninterrupted.h"

#include <QtGlobal>

#include <fcntl.h>
#include <sys/file.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <string_view>
#include <thread>

namespace quillmark {
namespace {

/// False where the lock is refused because of somebody else's.
bool lock(int descriptor, int kind)
{
    return uninterrupted([=] { return ::flock(descriptor, kind | LOCK_NB); }) == 0 ||
           errno != EWOULDBLOCK;
}

/// Another run has a folder to itself for a moment only; somebody else may have it for ever.
bool lockShared(int descriptor)
{
    constexpr int attempts = 40;
    for (int attempt = 1; !lock(descriptor, LOCK_SH); ++attempt) {
        if (attempt == attempts) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return true;
}

} // namespace

WritingMark::WritingMark(const std::filesystem::path &folder)
    : m_folder(uninterrupted(
          [&folder] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }))
{
    shareOrGiveUp();
}

std::optional<int> WritingMark::descriptor() const
{
    return m_folder ? std::optional(m_folder.get()) : std::nullopt;
}

void WritingMark::ifAlone(const std::function<void()> &work)
{
    if (!m_folder) {
        return;
    }
    if (lock(m_folder.get(), LOCK_EX)) {
        work();
    }
    shareOrGiveUp(); // a refused exclusive lock costs the shared one too
}

void WritingMark::shareOrGiveUp()
{
    if (m_folder && !lockShared(m_folder.get())) {
        m_folder.reset();
    }
}

std::string commonFolder(const std::vector<std::string> &files)
{
    // With the slash at its end, so that no folder's name passes for the beginning of another.
    std::string_view common = files.front();
    Q_ASSERT(std::ranges::all_of(files, [](const auto &file) { return file.starts_with('/'); }));
    for (const std::string_view file : files) {
        while (!common.ends_with('/') || !file.starts_with(common)) {
            common.remove_suffix(1);
            common = common.substr(0, common.rfind('/') + 1);
        }
    }
    return std::string(common.size() > 1 ? common.substr(0, common.size() - 1) : common);
}

} // namespace quillmark
