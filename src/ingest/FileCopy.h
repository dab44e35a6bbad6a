// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>

namespace quillmark {

/// Copies a file or, with everything below it, a directory to `destination`, replacing
/// what is there only once the copy is whole and on disk: until then the old entry stays.
///
/// A link is followed, so that the copy is always a real one; a link to a directory inside
/// a copied directory stays a link, since it may lead in circles. Contents are shared with
/// the source where the file system can (copy-on-write clone), permissions and modification
/// time are kept, and no temporary file is left behind. The folder that holds `destination`
/// is synchronised by syncDirectory(), once for many copies.
///
/// Throws FileError. Blocks; any thread.
void copyDurably(const std::filesystem::path &source, const std::filesystem::path &destination);

/// Puts a directory's entries on disk. Throws FileError. Blocks; any thread.
void syncDirectory(const std::filesystem::path &directory);

} // namespace quillmark
