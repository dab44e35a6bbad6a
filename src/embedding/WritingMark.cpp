// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "embedding/WritingMark.h"

#include <fcntl.h>
#include <sys/file.h>

#include <algorithm>
#include <cerrno>

namespace quillmark {
namespace {

/// False where the lock is refused because of somebody else's.
bool lock(int descriptor, int kind)
{
    int result = 0;
    do {
        result = ::flock(descriptor, kind);
    } while (result != 0 && errno == EINTR);
    return result == 0 || errno != EWOULDBLOCK;
}

} // namespace

WritingMark::WritingMark(const std::filesystem::path &folder)
    : m_folder(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
    if (m_folder) {
        lock(m_folder.get(), LOCK_SH);
    }
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
    if (lock(m_folder.get(), LOCK_EX | LOCK_NB)) {
        work();
    }
    lock(m_folder.get(), LOCK_SH); // a refused exclusive lock costs the shared one too
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
