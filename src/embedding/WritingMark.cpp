// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "embedding/WritingMark.h"

#include "base/Uninterrupted.h"

#include <fcntl.h>
#include <sys/file.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
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

std::filesystem::path commonFolder(const std::vector<std::filesystem::path> &files)
{
    std::filesystem::path common = files.front().parent_path();
    for (const std::filesystem::path &file : files) {
        if (file.parent_path() == common) {
            continue;
        }
        const auto end =
            std::mismatch(common.begin(), common.end(), file.begin(), file.end()).first;
        std::filesystem::path shared;
        std::for_each(common.begin(), end, [&shared](const auto &part) { shared /= part; });
        common = shared;
    }
    return common;
}

} // namespace quillmark
