// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "faults/CallWatch.h"

#include <vector>

// The watch over a child between fork() and its program. What it is to meet is decided before the
// fork, and what it does is written to memory that it shares with this process: in between, only
// what is safe in a signal handler is done (signal-safety(7)), and no lock is asked for.

namespace quillmark::test::watch {

/// The subject of what a child does itself.
inline constexpr const char *childItself = "child itself";

/// Takes what concerns the child from these faults, and forgets what was before.
void planForChild(const std::vector<Fault> &faults);

/// What children did since, and whether they met all that was planned for them.
std::vector<SystemCall> callsOfChild();
bool childMetItsFaults();

/// To be called by a child as soon as it is one.
void becomeChild() noexcept;
bool isChild() noexcept;

/// Find in the library what the functions that a child shares with this process pass its calls on
/// to; before the fork, since the linker has locks.
void prepareDataCallsForChild();
void prepareFileCallsForChild();

/// Counts a call of the child, notes how it will go, and gives that.
Order orderInChild(const char *function) noexcept;

/// Makes a call in a child, unless it is to fail.
template <typename Call>
auto passOnInChild(const char *function, Call call) -> decltype(call(false))
{
    const Order order = orderInChild(function);
    if (order.error != 0) {
        errno = order.error;
        return -1;
    }
    return call(order.halved);
}

} // namespace quillmark::test::watch
