// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "embedding/WritingMark.h"

#include <string>
#include <vector>

namespace quillmark {

/// Removes what an exiftool that was killed left unfinished beside these files, or beside what
/// stands directly in them where they are folders: exiftool does not start over where it finds such
/// a file.
///
/// What another exiftool is still at stays, since that would remove the original to give its own
/// rename a second try: it stays while somebody else has marked the folder or has the file open,
/// until it is a second old, and where none of that can be told, because the file system has no
/// leases or the file is another user's. May take that second; throws nothing for what it cannot
/// remove. Any thread.
void removeLeftovers(const std::vector<std::string> &files, WritingMark &mark);

} // namespace quillmark
