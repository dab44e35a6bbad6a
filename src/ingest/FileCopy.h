// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/UniqueFd.h"
#include "ingest/CopyNames.h"

#include <filesystem>

namespace quillmark {

/// Copies the source of `names` or, where it is a directory, all that is below it, to `target`,
/// where nothing may be yet, and gives a handle of the copy, which is on its way to the disk:
/// syncHandle() waits until it is there. What stands in a copied directory is there already.
///
/// A link is followed, so that the copy is always a real one; a link to a directory inside a
/// copied directory stays a link, since it may lead in circles. Contents are shared with the
/// source where the file system can (copy-on-write clone); permissions and modification time
/// are kept, but the owner may do everything with a copied directory.
///
/// Throws FileError; what was copied until then stays at `target`. Blocks; any thread.
[[nodiscard]] UniqueFd copyTree(const CopyNames &names, const std::filesystem::path &target);

/// Waits until what an open file holds, or the entries of an open directory, are on disk. False
/// where that failed, with errno. Blocks; any thread.
[[nodiscard]] bool syncHandle(const UniqueFd &handle);

/// Puts a directory's entries on disk. Throws FileError. Blocks; any thread.
void syncDirectory(const std::filesystem::path &directory);

} // namespace quillmark
