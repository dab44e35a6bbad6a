// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "base/Background.h"

#include "embedding/ChildProcess.h"
#include "support/Await.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <semaphore>
#include <stdexcept>
#include <thread>
#include <utility>

namespace quillmark {
namespace {

using test::await;

int threeOnAnotherThread(std::thread::id caller)
{
    return std::this_thread::get_id() == caller ? 0 : 3;
}

TEST(Background, givesWhatTheFunctionReturns)
{
    EXPECT_EQ(await(runInBackground(&threeOnAnotherThread, std::this_thread::get_id())), 3);
}

TEST(Background, throwsWhatTheFunctionThrows)
{
    auto failing = [] { throw std::out_of_range("its own"); };
    EXPECT_THROW(await(runInBackground(failing)), std::out_of_range);
}

TEST(Background, nothingIsOverBeforeTheCallerHasGoneOn)
{
    // Often enough that some workers are quicker than the caller.
    for (int i = 0; i < 2000; ++i) {
        bool isOver = false;
        auto waiting = [](bool &over) -> QCoro::Task<> {
            co_await runInBackground([] {});
            over = true;
        };
        QCoro::Task<> task = waiting(isOver);
        ASSERT_FALSE(isOver) << "the " << i << "th";
        await(std::move(task));
        ASSERT_TRUE(isOver);
    }
}

TEST(Background, isBusyUntilTheWorkIsOver)
{
    EXPECT_FALSE(isBackgroundBusy());
    const auto end = std::make_shared<std::binary_semaphore>(0);
    QCoro::Task<> task = runInBackground([end] { end->acquire(); });
    EXPECT_TRUE(isBackgroundBusy());
    end->release();
    await(std::move(task));
    EXPECT_FALSE(isBackgroundBusy());
}

TEST(Background, isWaitedForWithoutAnEventLoop)
{
    const auto begin = std::make_shared<std::binary_semaphore>(0);
    const auto isOver = std::make_shared<std::atomic<bool>>(false);
    QCoro::Task<> task = runInBackground([begin, isOver] {
        begin->acquire();
        *isOver = true;
    });
    const std::jthread later([begin] { begin->release(); });
    waitForBackground();
    EXPECT_TRUE(*isOver);
    await(std::move(task));
}

// Run where the thread sanitizer must find it (see CMakeLists.txt), and nowhere else.
TEST(Background, DISABLED_raceOfCallerAndWorker)
{
    // A child must not keep the sanitizer from looking on. One of QProcess does: it runs in the
    // memory of the test, and the sanitizer takes the test for that child.
    runChild("/bin/true", {});
    int shared = 0;
    auto write = [&shared] { shared = 1; };
    QCoro::Task<> task = runInBackground(write);
    shared = 2;
    await(std::move(task));
    EXPECT_NE(shared, 0);
}

} // namespace
} // namespace quillmark
