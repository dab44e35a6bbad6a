// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// Makes one real run of a session over a folder, in which one system call may fail, tells how
// it ended, and, for every line that it is sent, makes another run without a fault and tells
// of that. script/faults asks it to, and judges.

#include "embedding/Exiftool.h"
#include "faults/SystemCalls.h"
#include "ingest/IngestViewModel.h"
#include "manual/LastUsedPayloadStore.h"
#include "support/Await.h"
#include "support/Samples.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <sys/wait.h>

#include <iostream>
#include <string>

namespace quillmark::test {
namespace {

namespace fs = std::filesystem;
using namespace Qt::StringLiterals;

/// What is typed for the run, and what an earlier run left in the settings.
SlatePayload typedPayload()
{
    return fullPayload();
}

SlatePayload earlierPayload()
{
    return minimalPayload();
}

QString nameOf(const std::optional<SlatePayload> &stored)
{
    if (!stored) {
        return u"none"_s;
    }
    if (*stored == typedPayload()) {
        return u"typed"_s;
    }
    return *stored == earlierPayload() ? u"earlier"_s : u"broken"_s;
}

struct Options {
    fs::path roll;
    fs::path settings;
    BackupMode mode = BackupMode::backupOriginals;
    bool earlierRun = false;
    std::vector<Fault> faults;
};

/// Makes a run and describes how it ended.
QJsonObject run(IngestViewModel &session, const Options &options)
{
    session.setBackupMode(options.mode);
    session.setState(IngestViewModel::ManualEntry{options.roll, std::nullopt});
    await(session.submitManual(typedPayload()), std::chrono::seconds(100));
    const auto *const error = std::get_if<IngestViewModel::Error>(&session.state());
    const bool done = std::holds_alternative<IngestViewModel::Done>(session.state());
    return {{u"state"_s, done ? u"done"_s : (error != nullptr ? u"error"_s : u"other"_s)},
            {u"text"_s, error != nullptr ? error->text : QString()}};
}

QJsonArray described(const std::vector<SystemCall> &calls)
{
    QJsonArray list;
    for (const SystemCall &call : calls) {
        list.append(QJsonArray{QString::fromStdString(call.function),
                               QString::fromStdString(call.subject), call.changes});
    }
    return list;
}

/// Leaves a trace for who traces this process: asks for a file that is not there.
void mark(const std::string &what)
{
    std::error_code ignored;
    static_cast<void>(fs::exists("/quillmark watch " + what, ignored));
}

QJsonObject watchedRun(IngestViewModel &session, const Options &options)
{
    const fs::path configuration = Exiftool::configURL().value();
    WatchedCalls watched({{options.roll, "roll"},
                          {options.settings, "settings"},
                          {configuration.parent_path(), "resources"},
                          {"/opt/homebrew/bin/exiftool", "exiftool in /opt"},
                          {"/usr/local/bin/exiftool", "exiftool in /usr/local"},
                          {"/usr/bin/exiftool", "exiftool in /usr"}},
                         options.faults);
    mark("begins");
    QJsonObject result = run(session, options);
    mark("ends");
    result.insert(u"met"_s, watched.faultsMet());
    result.insert(u"calls"_s, described(watched.calls()));
    return result;
}

/// What this process has open: the number of each descriptor and what is behind it.
QJsonArray openDescriptors()
{
    QJsonArray list;
    for (const auto &entry : fs::directory_iterator("/proc/self/fd")) {
        const fs::path behind = fs::read_symlink(entry.path());
        if (behind.filename() != "fd") { // this listing itself
            list.append(
                QString::fromStdString(entry.path().filename().native() + " " + behind.native()));
        }
    }
    return list;
}

/// Whether there is a child of this process that nobody has waited for.
bool hasChildren()
{
    siginfo_t ignored{};
    return ::waitid(P_ALL, 0, &ignored, WEXITED | WNOHANG | WNOWAIT) == 0;
}

/// Tells of a run, and of what the store holds after it.
void print(QJsonObject result)
{
    result.insert(u"children"_s, hasChildren());
    result.insert(u"descriptors"_s, openDescriptors());
    result.insert(u"stored"_s, nameOf(LastUsedPayloadStore::load()));
    std::cout << QJsonDocument(result).toJson(QJsonDocument::Compact).toStdString() << std::endl;
}

Options optionsFrom(const QCoreApplication &application)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(u"Makes a run in which one system call fails."_s);
    parser.addHelpOption();
    parser.addOption({u"earlier"_s, u"A payload was typed before."_s});
    parser.addPositionalArgument(u"roll"_s, u"The folder to run over."_s);
    parser.addPositionalArgument(u"settings"_s, u"The folder for settings."_s);
    parser.addPositionalArgument(u"mode"_s, u"The backup mode."_s);
    parser.addPositionalArgument(u"fault"_s,
                                 u"FUNCTION SUBJECT OCCURRENCE ERRNO; 0 for always, for a part."_s,
                                 u"[fault...]"_s);
    parser.process(application);
    const QStringList arguments = parser.positionalArguments();
    if (arguments.size() < 3 || arguments.size() % 4 != 3) {
        parser.showHelp(2);
    }
    Options options{.roll = arguments[0].toStdString(),
                    .settings = arguments[1].toStdString(),
                    .mode = backupModeFromRawValue(arguments[2]).value(),
                    .earlierRun = parser.isSet(u"earlier"_s),
                    .faults = {}};
    for (qsizetype i = 3; i < arguments.size(); i += 4) {
        options.faults.push_back({.function = arguments[i].toStdString(),
                                  .subject = arguments[i + 1].toStdString(),
                                  .occurrence = arguments[i + 2].toInt(),
                                  .error = arguments[i + 3].toInt()});
    }
    return options;
}

} // namespace
} // namespace quillmark::test

int main(int argc, char **argv)
{
    using namespace quillmark;
    const QCoreApplication application(argc, argv);
    const test::Options options = test::optionsFrom(application);
    ::setenv("XDG_CONFIG_HOME", options.settings.c_str(), 1);
    if (options.earlierRun) {
        LastUsedPayloadStore::save(test::earlierPayload());
    }
    const QJsonArray before = test::openDescriptors();
    IngestViewModel session;
    QJsonObject first = test::watchedRun(session, options);
    first.insert(QStringLiteral("before"), before);
    test::print(std::move(first));
    for (std::string line; std::getline(std::cin, line);) {
        test::print(test::run(session, options));
    }
    return 0;
}
