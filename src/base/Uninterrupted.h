// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cerrno>

namespace quillmark {

/// Makes a system call that gives -1 and errno where it fails, again for as long as a signal
/// came in between (EINTR). Not for close(), which has closed even then.
template <typename Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

} // namespace quillmark
