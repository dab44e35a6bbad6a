// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "base/Background.h"

#include <QFuture>
#include <QFutureWatcher>
#include <QObject>
#include <QPromise>
#include <QRunnable>
#include <QThreadPool>

namespace quillmark {
namespace {

class Runnable final : public QRunnable
{
public:
    Runnable(std::function<void()> work, std::shared_ptr<std::binary_semaphore> end)
        : m_work(std::move(work)), m_end(std::move(end))
    {}

    QFuture<void> future() const { return m_promise.future(); }

    /// Makes all that was written so far known to the worker, which deletes this when it is done.
    void start()
    {
        m_start.release();
        QThreadPool::globalInstance()->start(this);
    }

    void run() override
    {
        m_start.acquire();
        m_promise.start();
        m_work();
        m_work = nullptr;
        m_end->release();
        m_promise.finish();
    }

private:
    std::function<void()> m_work;
    std::shared_ptr<std::binary_semaphore> m_end;
    std::binary_semaphore m_start{0};
    QPromise<void> m_promise;
};

} // namespace

void PoolWork::await_suspend(std::coroutine_handle<> awaiting)
{
    auto runnable = std::make_unique<Runnable>(std::move(m_work), m_end);
    auto *const watcher = new QFutureWatcher<void>;
    QObject::connect(watcher, &QFutureWatcher<void>::finished, watcher, [watcher, awaiting] {
        watcher->deleteLater();
        awaiting.resume();
    });
    watcher->setFuture(runnable->future());
    runnable.release()->start();
}

} // namespace quillmark
