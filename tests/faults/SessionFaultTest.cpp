// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "faults/SystemCalls.h"
#include "ingest/IngestViewModel.h"
#include "support/Await.h"
#include "support/Frames.h"
#include "support/Samples.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <string>

namespace quillmark::test {
namespace {

namespace fs = std::filesystem;
using Session = IngestViewModel;

/// A system that has no thread to give: its limit of processes is reached.
class WithoutThreads : public ::testing::Test
{
protected:
    WithoutThreads() { ::setenv("XDG_CONFIG_HOME", m_settings.path().c_str(), 1); }

    static Fault fault(int occurrence) { return {"pthread_create", "thread", occurrence, EAGAIN}; }

    void submit()
    {
        m_session.setState(Session::ManualEntry{m_roll.path(), std::nullopt});
        await(m_session.submitManual(fullPayload()));
    }

    bool hasFailed() const
    {
        const auto *const error = std::get_if<Session::Error>(&m_session.state());
        return error != nullptr &&
               error->text == QStringLiteral("A thread could not be started: "
                                             "Resource temporarily unavailable");
    }

    const TempDir m_settings;
    const TempDir m_roll;
    Session m_session;
};

TEST_F(WithoutThreads, aScanEndsInAnError)
{
    const WatchedCalls watched({}, {fault(1)});
    await(m_session.scan(m_roll.path()));
    EXPECT_TRUE(watched.faultsMet());
    EXPECT_TRUE(hasFailed());
}

TEST_F(WithoutThreads, aRunEndsInAnErrorAndTheNextSucceeds)
{
    const fs::path frame = writeFrame(m_roll / "1.jpg");
    const std::string before = readFile(frame);
    for (const int occurrence : {1, 2, 3}) { // to list, to prepare, to write
        const WatchedCalls watched({}, {fault(occurrence)});
        submit();
        EXPECT_TRUE(watched.faultsMet()) << occurrence;
        EXPECT_TRUE(hasFailed()) << occurrence;
        EXPECT_EQ(readFile(frame), before) << occurrence;
    }
    submit();
    ASSERT_TRUE(std::holds_alternative<Session::Done>(m_session.state()));
    EXPECT_NE(readFile(frame), before);
}

} // namespace
} // namespace quillmark::test
