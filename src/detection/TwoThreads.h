// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <future>
#include <system_error>
#include <utility>

namespace quillmark {

/// Runs both functions, `second` on a thread of its own where one can be had, and gives
/// their results. Throws what either throws, after both are over.
template <typename First, typename Second>
auto runBoth(const First &first, const Second &second)
    -> std::pair<decltype(first()), decltype(second())>
{
    std::future<decltype(second())> pending;
    try {
        pending = std::async(std::launch::async, std::cref(second));
    } catch (const std::system_error &) {
        pending = std::async(std::launch::deferred, std::cref(second));
    }
    // The future's destructor waits for the thread, should this throw.
    auto result = first();
    return {std::move(result), pending.get()};
}

} // namespace quillmark
