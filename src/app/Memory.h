// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

namespace quillmark {

/// Has the memory that a frame needed go back to the system as soon as it is looked at. The C
/// library's way is to learn from large blocks to keep such ones, for each thread that has ever
/// asked for one, and a program that waits for its next roll would go on holding them.
void returnMemory();

} // namespace quillmark
