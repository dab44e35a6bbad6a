// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "rolls/Disk.h"

#include <sys/mount.h>

#include <cerrno>
#include <string>
#include <system_error>

namespace quillmark::test {
namespace {

void mountAt(const std::filesystem::path &place, unsigned long flags, const std::string &options)
{
    if (::mount("disk", place.c_str(), "tmpfs", flags, options.c_str()) != 0) {
        throw std::system_error(errno, std::generic_category(), "cannot mount a disk");
    }
}

} // namespace

Disk::Disk(std::size_t bytes)
{
    mountAt(path(), 0, "size=" + std::to_string(bytes));
}

Disk::~Disk()
{
    ::umount2(path().c_str(), MNT_DETACH);
}

void Disk::makeReadOnly() const
{
    mountAt(path(), MS_REMOUNT | MS_RDONLY, {});
}

void Disk::fill(const std::filesystem::path &ballast, std::size_t free) const
{
    const std::size_t room = std::filesystem::space(path()).available;
    m_place.write(ballast, std::string(room - free, 'x'));
}

} // namespace quillmark::test
