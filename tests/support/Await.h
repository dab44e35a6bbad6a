// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QCoro/QCoroTask>
#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <exception>
#include <optional>
#include <stdexcept>
#include <utility>

namespace quillmark::test {

/// Runs the loop until it is told to quit, unless the condition holds already.
inline void runUntil(const bool &over, QEventLoop &loop, std::chrono::milliseconds limit)
{
    if (!over) {
        QTimer::singleShot(limit, &loop, &QEventLoop::quit);
        loop.exec();
    }
    if (!over) {
        throw std::runtime_error("the task was not over in time");
    }
}

/// Runs the event loop until the task is over and gives its result or throws what it threw.
/// (QCoro::waitFor never returns when the task throws.) A task that is not over after the
/// time given is a failure of the test.
template <typename Result>
Result await(QCoro::Task<Result> task, std::chrono::milliseconds limit = std::chrono::seconds(60))
{
    struct Ending {
        bool over = false;
        std::exception_ptr failure;
    } ending;
    QEventLoop loop;

    // What the coroutine uses comes in as arguments: they live in its frame.
    if constexpr (std::is_void_v<Result>) {
        auto wait = [](QCoro::Task<Result> awaited, Ending &end,
                       QEventLoop &events) -> QCoro::Task<> {
            try {
                co_await awaited;
            } catch (...) {
                end.failure = std::current_exception();
            }
            end.over = true;
            events.quit();
        };
        wait(std::move(task), ending, loop);
        runUntil(ending.over, loop, limit);
        if (ending.failure) {
            std::rethrow_exception(ending.failure);
        }
    } else {
        std::optional<Result> result;
        auto wait = [](QCoro::Task<Result> awaited, std::optional<Result> &value, Ending &end,
                       QEventLoop &events) -> QCoro::Task<> {
            try {
                value.emplace(co_await awaited);
            } catch (...) {
                end.failure = std::current_exception();
            }
            end.over = true;
            events.quit();
        };
        wait(std::move(task), result, ending, loop);
        runUntil(ending.over, loop, limit);
        if (ending.failure) {
            std::rethrow_exception(ending.failure);
        }
        return std::move(*result);
    }
}

} // namespace quillmark::test
