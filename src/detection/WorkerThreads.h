// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace quillmark {

/// How many threads one frame is worth: as many as there are cores, but beyond four its file
/// and its memory are what counts.
inline int frameThreads()
{
    return static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1U, 4U));
}

/// Calls `work` with 0 to `count` - 1, each on a thread of its own, the first on the caller's.
/// Where threads cannot be had, the calls that were meant for them are left out, so whatever
/// there is to do has to be shared out by the calls themselves. Comes back when all are over,
/// and throws what the first of them to throw has thrown.
template <typename Work>
void runWorkers(int count, const Work &work)
{
    std::mutex mutex;
    std::exception_ptr failure;
    const auto guarded = [&](int worker) {
        try {
            work(worker);
        } catch (...) {
            const std::scoped_lock lock(mutex);
            if (!failure) {
                failure = std::current_exception();
            }
        }
    };
    {
        std::vector<std::jthread> threads;
        threads.reserve(static_cast<std::size_t>(std::max(count - 1, 0)));
        try {
            for (int worker = 1; worker < count; ++worker) {
                threads.emplace_back(guarded, worker);
            }
        } catch (const std::system_error &) {
            // Those that are there do.
        }
        guarded(0);
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}

/// Calls `work` with each of 0 to `count` - 1 once, on as many threads as one frame is worth.
/// Throws what a call has thrown, when no other is at work any more.
template <typename Work>
void shareOut(int count, const Work &work)
{
    std::atomic<int> next = 0;
    runWorkers(std::min(count, frameThreads()), [&](int) {
        for (int i = next++; i < count; i = next++) {
            work(i);
        }
    });
}

} // namespace quillmark
