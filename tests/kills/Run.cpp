// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "Commands.h"

#include "ingest/IngestViewModel.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <type_traits>
#include <variant>

namespace quillmark::kills {
namespace {

std::string lineOf(const IngestViewModel::State &state)
{
    return std::visit(
        [](const auto &now) -> std::string {
            using Case = std::decay_t<decltype(now)>;
            if constexpr (std::is_same_v<Case, IngestViewModel::Scanning>) {
                return "scanning";
            } else if constexpr (std::is_same_v<Case, IngestViewModel::Ready>) {
                return "ready " + std::to_string(now.plan.rollFiles.size());
            } else if constexpr (std::is_same_v<Case, IngestViewModel::Writing>) {
                return "writing";
            } else if constexpr (std::is_same_v<Case, IngestViewModel::Done>) {
                return "done " + std::to_string(now.outcome.mutated.size());
            } else if constexpr (std::is_same_v<Case, IngestViewModel::Error>) {
                return "error " + now.text.simplified().toStdString();
            } else {
                return "error no slate was found";
            }
        },
        state);
}

void say(const std::string &line)
{
    std::printf("%s\n", line.c_str());
    std::fflush(stdout); // whoever waits for this line must have it now
}

/// Ends the event loop when standard input ends.
void quitWithInput(QSocketNotifier &input)
{
    QObject::connect(&input, &QSocketNotifier::activated, &input, [] {
        std::array<char, 256> ignored; // NOLINT(*-member-init): read() fills it
        if (::read(STDIN_FILENO, ignored.data(), ignored.size()) <= 0) {
            QCoreApplication::quit();
        }
    });
}

} // namespace

int runIngest(const std::filesystem::path &folder, BackupMode mode)
{
    IngestViewModel session;
    session.setBackupMode(mode);
    QObject::connect(&session, &IngestViewModel::stateChanged, &session, [&session] {
        say(lineOf(session.state()));
        if (std::holds_alternative<IngestViewModel::Ready>(session.state())) {
            // Not from within the change of a state.
            QMetaObject::invokeMethod(
                &session, [&session] { session.runIngest(); }, Qt::QueuedConnection);
        }
    });
    session.openFolder(folder);

    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    quitWithInput(input);
    QCoreApplication::exec();
    return std::holds_alternative<IngestViewModel::Done>(session.state()) ? EXIT_SUCCESS
                                                                          : EXIT_FAILURE;
}

} // namespace quillmark::kills
