// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "base/Background.h"

#include <QCoreApplication>
#include <QObject>

#include <atomic>
#include <system_error>

namespace quillmark {
namespace {

/// How much work is not over.
constinit std::atomic<int> working = 0;

/// Stands for one piece of work that is not over.
class AtWork
{
public:
    AtWork() { ++working; }
    AtWork(const AtWork &) = delete;
    AtWork &operator=(const AtWork &) = delete;
    ~AtWork()
    {
        --working;
        working.notify_all();
    }
};

void waitAtTheEnd()
{
    qAddPostRoutine(&waitForBackground);
}
Q_COREAPP_STARTUP_FUNCTION(waitAtTheEnd)

} // namespace

void ThreadWork::await_suspend(std::coroutine_handle<> awaiting)
{
    // Lives on this thread, whose event loop calls what is posted to it.
    auto resumption = std::make_unique<QObject>();
    auto run = [work = std::move(m_work), awaiting, receiver = resumption.get(),
                atWork = std::make_unique<AtWork>()]() mutable {
        work();
        work = nullptr;
        const auto resume = [awaiting, receiver] {
            receiver->deleteLater();
            awaiting.resume();
        };
        QMetaObject::invokeMethod(receiver, resume, Qt::QueuedConnection);
    };
    try {
        m_thread = std::thread(std::move(run));
    } catch (const std::system_error &error) {
        throw std::system_error(error.code(), "A thread could not be started");
    }
    static_cast<void>(resumption.release());
}

bool isBackgroundBusy()
{
    return working != 0;
}

void waitForBackground()
{
    for (int left = working; left != 0; left = working) {
        working.wait(left);
    }
}

} // namespace quillmark
