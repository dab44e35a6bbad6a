// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "ingest/DurableCopies.h"

#include "base/PathText.h"
#include "ingest/FileCopy.h"
#include "ingest/FileError.h"

#include <cstdio>
#include <fcntl.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace quillmark {
namespace {

namespace fs = std::filesystem;

Workplace makeWorkplace(const CopyNames &names)
try {
    return Workplace(names.destination().parent_path());
} catch (const std::system_error &failure) {
    names.fail(failure.code());
}

/// Takes the place of what a rename cannot replace: a directory, or a file by a directory.
void exchange(const CopyNames &names, Workplace &workplace)
{
    const fs::path &destination = names.destination();
    const fs::path copy = workplace.copy();
    makeWritable(destination); // else it cannot be moved
    if (::renameat2(AT_FDCWD, copy.c_str(), AT_FDCWD, destination.c_str(), RENAME_EXCHANGE) == 0) {
        return;
    }
    // Nothing is there to change places with, or the file system cannot do it in one step.
    const fs::path replaced = workplace.replaced();
    const bool moved = ::rename(destination.c_str(), replaced.c_str()) == 0;
    names.check(moved || errno == ENOENT);
    if (::rename(copy.c_str(), destination.c_str()) != 0) {
        const std::error_code reason(errno, std::generic_category());
        if (moved && ::rename(replaced.c_str(), destination.c_str()) != 0) {
            workplace.keepReplaced();
            throw FileError(
                QStringLiteral("Could not copy “%1” to “%2”, of which the earlier copy "
                               "is “%3” now")
                    .arg(pathText(names.source()), pathText(destination), pathText(replaced)),
                names.source(), reason);
        }
        names.fail(reason);
    }
}

/// Gives the finished copy its place; what was there goes with the workplace.
void replace(const CopyNames &names, Workplace &workplace)
{
    const fs::path &destination = names.destination();
    const fs::path copy = workplace.copy();
    std::error_code ignored;
    if (fs::is_directory(copy, ignored) ||
        fs::is_directory(fs::symlink_status(destination, ignored))) {
        exchange(names, workplace);
        return;
    }
    names.check(::rename(copy.c_str(), destination.c_str()) == 0);
}

/// What copies on their way hold until they are finished: room on the disk, and open files.
bool isLackOfRoom(const std::error_code &code)
{
    return code == std::errc::no_space_on_device || code == std::errc::too_many_files_open ||
           code == std::errc::too_many_files_open_in_system ||
           code == std::error_code(EDQUOT, std::generic_category());
}

} // namespace

DurableCopies::Copy::Copy(CopyNames copyNames)
    : names(std::move(copyNames)), workplace(makeWorkplace(names))
{}

void DurableCopies::make(const CopyNames &names)
{
    Copy &copy = m_copies.emplace_back(names);
    try {
        copy.content = copyTree(copy.names, copy.workplace.copy());
    } catch (...) {
        m_copies.pop_back();
        throw;
    }
}

void DurableCopies::add(const fs::path &source, const fs::path &destination)
{
    const CopyNames names(source, destination);
    if (m_copies.size() == together) {
        finish();
    }
    try {
        make(names);
    } catch (const fs::filesystem_error &failure) {
        const bool others = !m_copies.empty();
        finish();
        if (!others || !isLackOfRoom(failure.code())) {
            throw;
        }
        make(names);
    }
}

void DurableCopies::finish()
{
    // Whatever ends this, the copies that have no place yet go.
    std::list<Copy> copies = std::exchange(m_copies, {});
    // And what the others have replaced, once they have no files open: to remove a folder takes
    // an open file for each level of it.
    std::list<Copy> placed;
    while (!copies.empty()) {
        Copy &copy = copies.front();
        copy.names.check(syncHandle(copy.content));
        replace(copy.names, copy.workplace);
        copy.content.reset();
        placed.splice(placed.end(), copies, copies.begin());
    }
}

} // namespace quillmark
