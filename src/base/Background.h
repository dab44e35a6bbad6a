// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QCoro/QCoroTask>

#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <type_traits>
#include <utility>

namespace quillmark {

/// Work for a thread of its own. Awaiting it starts it, and resumes the awaiting coroutine from
/// its thread's event loop when it is over, even if it is over already: what stands behind a
/// call always comes before what stands behind co_await.
class ThreadWork
{
public:
    /// The work must not throw. It is destroyed on its thread, before the coroutine resumes.
    explicit ThreadWork(std::function<void()> work) : m_work(std::move(work)) {}

    bool await_ready() const { return false; }
    /// Throws std::system_error, which passes for what was awaited, where no thread can be had.
    void await_suspend(std::coroutine_handle<> awaiting);
    void await_resume() { m_thread.join(); }

private:
    std::function<void()> m_work;
    std::thread m_thread;
};

/// Whether any ThreadWork is not over. Nothing bounds how much goes on at a time. Any thread.
bool isBackgroundBusy();

/// Waits until all ThreadWork is over, though not until the coroutines resume that await it: that
/// is up to their event loops. The application's destructor does so too, since work may use what
/// lives as long as the application. What a thread of it does at its own end is not waited for.
/// Any thread but those that work.
void waitForBackground();

/// Runs a blocking function on a thread of its own, without blocking the awaiting coroutine, and
/// gives what it returned or throws what it threw; std::system_error where no thread can be had
/// (pthread_create(3), EAGAIN). The coroutine resumes on the thread from which it awaited; that
/// thread must run an event loop.
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
    // the work needs is named here and handed over by value.
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
    ThreadWork work(std::move(call));
    co_await std::move(work);

    if (box->failure) {
        std::rethrow_exception(std::exchange(box->failure, nullptr));
    }
    if constexpr (!std::is_void_v<Result>) {
        co_return std::move(*box->value);
    }
}

} // namespace quillmark
