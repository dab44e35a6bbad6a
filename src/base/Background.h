// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QCoro/QCoroTask>

#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <semaphore>
#include <type_traits>
#include <utility>

namespace quillmark {

/// Work for a worker of the global thread pool. Awaiting it starts it, and resumes the awaiting
/// coroutine from its thread's event loop when it is over, even if it is over already: what
/// stands behind a call always comes before what stands behind co_await.
///
/// What the work touches is handed over and back by semaphores of our own: the thread sanitizer
/// does not see how Qt, which is not built for it, does so, and would see races in all of it.
class PoolWork
{
public:
    /// The work must not throw. It is destroyed on the worker, before the coroutine resumes.
    explicit PoolWork(std::function<void()> work) : m_work(std::move(work)) {}

    bool await_ready() const { return false; }
    void await_suspend(std::coroutine_handle<> awaiting);
    void await_resume() const { m_end->acquire(); }

private:
    std::function<void()> m_work;
    std::shared_ptr<std::binary_semaphore> m_end = std::make_shared<std::binary_semaphore>(0);
};

/// Runs a blocking function on a worker of the global thread pool, without blocking the
/// awaiting coroutine, and gives what it returned or throws what it threw. The coroutine
/// resumes on the thread from which it awaited; that thread must run an event loop.
///
/// Function and arguments are taken by value: the work outlives any reference.
template <typename Function, typename... Arguments>
auto runInBackground(Function function, Arguments... arguments)
    -> QCoro::Task<std::invoke_result_t<Function, Arguments...>>
{
    using Result = std::invoke_result_t<Function, Arguments...>;
    struct Nothing {};
    struct Box {
        std::optional<std::conditional_t<std::is_void_v<Result>, Nothing, Result>> value;
        std::exception_ptr failure;
    };

    // GCC 12 miscompiles a capturing lambda inside a co_await expression: everything that
    // the worker needs is named here and handed over by value.
    const auto box = std::make_shared<Box>();
    auto call = [box, function = std::move(function),
                 ... arguments = std::move(arguments)]() mutable {
        try {
            if constexpr (std::is_void_v<Result>) {
                std::invoke(std::move(function), std::move(arguments)...);
                box->value.emplace();
            } else {
                box->value.emplace(std::invoke(std::move(function), std::move(arguments)...));
            }
        } catch (...) {
            box->failure = std::current_exception();
        }
    };
    PoolWork work(std::move(call));
    co_await work;

    if (box->failure) {
        std::rethrow_exception(std::exchange(box->failure, nullptr));
    }
    if constexpr (!std::is_void_v<Result>) {
        co_return std::move(*box->value);
    }
}

} // namespace quillmark
