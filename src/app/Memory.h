// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

namespace quillmark {

/// Lets all threads take memory from one pool, so that what one of them gave back serves the
/// next. The C library's way is a pool for each, which keeps what a frame has needed once for
/// every thread that has ever looked at one; threads that ask rarely and for much lose nothing
/// by sharing. Before the first thread is started.
void shareMemory();

} // namespace quillmark
