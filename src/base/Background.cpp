// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "base/Background.h"

#include <QCoreApplication>
#include <QEvent>
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

/// Resumes a coroutine on its own thread, at an event from another one. That brings nothing with it
/// that the other thread wrote: the thread sanitizer does not see how Qt, which is not built for
/// it, hands that on.
class Resumption final : public QObject
{
public:
    explicit Resumption(std::coroutine_handle<> awaiting) : m_awaiting(awaiting) {}

protected:
    void customEvent(QEvent * /*event*/) override
    {
        deleteLater();
        m_awaiting.resume();
    }

private:
    std::coroutine_handle<> m_awaiting;
};

void waitAtTheEnd()
{
    qAddPostRoutine(&waitForBackground);
}
Q_COREAPP_STARTUP_FUNCTION(waitAtTheEnd)

} // namespace

void ThreadWork::await_suspend(std::coroutine_handle<> awaiting)
{
    auto resumption = std::make_unique<Resumption>(awaiting);
    auto run = [work = std::move(m_work), receiver = resumption.get(),
                atWork = std::make_unique<AtWork>()]() mutable {
        work();
        work = nullptr;
        QCoreApplication::postEvent(receiver, new QEvent(QEvent::User));
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
