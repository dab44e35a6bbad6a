// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "RollOptions.h"

#include <functional>
#include <string>

namespace quillmark::tools {

/// Makes the roll's frames and writes them into its folder, several at the same time.
/// `report` is called once a frame, in the order of frames, with a line that says what
/// was written; never twice at a time, but from any thread.
/// Throws std::runtime_error where a frame cannot be made or written.
void makeRoll(const RollOptions &options, const std::function<void(const std::string &)> &report);

} // namespace quillmark::tools
