// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QCoro/QCoroTask>
#include <QFuture>
#include <QFutureWatcher>
#include <QObject>
#include <QtConcurrent/QtConcurrentRun>

#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace quillmark {

/// Resumes the awaiting coroutine from its thread's event loop when a future is over, even if it
/// is over already: what stands behind a call always comes before what stands behind co_await.
class FutureEnd
{
public:
    explicit FutureEnd(QFuture<void> future) : m_future(std::move(future)) {}

    bool await_ready() const { return false; }
    void await_suspend(std::coroutine_handle<> awaiting) const
    {
        auto *const watcher = new QFutureWatcher<void>;
        QObject::connect(watcher, &QFutureWatcher<void>::finished, watcher, [watcher, awaiting] {
            watcher->deleteLater();
            awaiting.resume();
        });
        watcher->setFuture(m_future);
    }
    void await_resume() const {}

private:
    QFuture<void> m_future;
};

/// Runs a blocking function on a worker of the global thread pool, without blocking the
/// awaiting coroutine, and gives what it returned or throws what it threw. The coroutine
/// resumes on the thread from which it awaited; that thread must run an event loop.
///
/// Function and arguments are taken by value: the work outlives any reference. The result
/// travels in a box of our own because QFuture wraps foreign exceptions in
/// QUnhandledException, whose description nobody wants to see.
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
    auto work = [box](Function call, Arguments... values) {
        try {
            if constexpr (std::is_void_v<Result>) {
                std::invoke(std::move(call), std::move(values)...);
                box->value.emplace();
            } else {
                box->value.emplace(std::invoke(std::move(call), std::move(values)...));
            }
        } catch (...) {
            box->failure = std::current_exception();
        }
    };
    const FutureEnd finished(
        QtConcurrent::run(std::move(work), std::move(function), std::move(arguments)...));
    co_await finished;

    if (box->failure) {
        std::rethrow_exception(std::exchange(box->failure, nullptr));
    }
    if constexpr (!std::is_void_v<Result>) {
        co_return std::move(*box->value);
    }
}

} // namespace quillmark
