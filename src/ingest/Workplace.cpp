// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "ingest/Workplace.h"

#include "base/Uninterrupted.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <string_view>
#include <system_error>

namespace quillmark {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view prefix = ".quillmark-";
constexpr std::string_view placeholder = "XXXXXX"; // mkdtemp's

bool hasWorkplaceName(const fs::path &path)
{
    const std::string name = path.filename().native();
    return name.size() == prefix.size() + placeholder.size() && name.starts_with(prefix);
}

UniqueFd openFolder(const fs::path &path)
{
    return UniqueFd(uninterrupted(
        [&path] { return ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC); }));
}

bool lock(const UniqueFd &folder)
{
    return ::flock(folder.get(), LOCK_EX | LOCK_NB) == 0;
}

/// Whether the folder still has a name.
bool exists(const UniqueFd &folder)
{
    struct stat status {};
    return ::fstat(folder.get(), &status) == 0 && status.st_nlink > 0;
}

void makeAllWritable(const fs::path &path)
{
    std::error_code failure;
    if (!fs::is_directory(fs::symlink_status(path, failure))) {
        return;
    }
    makeWritable(path);
    for (fs::directory_iterator entry(path, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        makeAllWritable(entry->path());
    }
}

/// Removes what is there with all that is in it, also where folders may not be written to.
void removeTree(const fs::path &path, std::error_code &failure)
{
    fs::remove_all(path, failure);
    if (failure == std::errc::permission_denied) {
        makeAllWritable(path);
        fs::remove_all(path, failure);
    }
}

} // namespace

Workplace::Workplace(const fs::path &folder)
{
    // A file system may say of every folder that it has no name, or nothing at all.
    constexpr int attempts = 5;
    for (int attempt = 1;; ++attempt) {
        std::string pattern = (folder / prefix).native();
        pattern += placeholder;
        if (::mkdtemp(pattern.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category());
        }
        m_path = pattern;
        m_lock = openFolder(m_path);
        const int reason = errno;
        const bool locked = m_lock && (lock(m_lock) || errno != EWOULDBLOCK);
        if (locked && exists(m_lock)) {
            return;
        }
        // Another process saw it before it was locked, and is removing it or has. If it is there
        // after all, it only could not be looked at, or opened.
        if (m_lock && attempt == attempts) {
            return;
        }
        ::rmdir(m_path.c_str());
        if (!m_lock && (reason != ENOENT || attempt == attempts)) {
            throw std::system_error(reason, std::generic_category());
        }
    }
}

Workplace::~Workplace()
{
    // The lock only keeps others from removing the folder. To remove it takes an open file for
    // each level of what is in it, and the lock's is one.
    m_lock.reset();
    // Mostly nothing is left in it.
    if (::rmdir(m_path.c_str()) == 0) {
        return;
    }
    // What cannot be removed now may well be removed a moment later (EINTR).
    std::error_code failure;
    for (int attempt = 0; attempt < 3; ++attempt) {
        removeTree(m_keepsReplaced ? copy() : m_path, failure);
        if (!failure) {
            break;
        }
    }
}

void makeWritable(const fs::path &directory)
{
    std::error_code ignored;
    if (fs::is_directory(fs::symlink_status(directory, ignored))) {
        fs::permissions(directory, fs::perms::owner_all, fs::perm_options::add, ignored);
    }
}

void removeAbandonedWorkplaces(const fs::path &folder)
{
    std::error_code ignored;
    for (fs::directory_iterator entry(folder, ignored), end; !ignored && entry != end;
         entry.increment(ignored)) {
        if (!hasWorkplaceName(entry->path())) {
            continue;
        }
        const UniqueFd workplace = openFolder(entry->path());
        if (!workplace || !lock(workplace)) {
            continue;
        }
        const fs::path &path = entry->path();
        std::error_code kept;
        if (!fs::exists(fs::symlink_status(path / "replaced", kept))) {
            removeTree(path / "copy", kept);
        }
        fs::remove(path, kept); // only where nothing is left in it
    }
}

} // namespace quillmark
