// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "embedding/ChildProcess.h"
#include "embedding/Exiftool.h"
#include "ingest/IngestViewModel.h"
#include "payload/SlatePayloadJson.h"
#include "support/Await.h"
#include "support/Frames.h"
#include "support/Printers.h"
#include "support/Samples.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <variant>

namespace quillmark::test {

namespace fs = std::filesystem;
using Session = IngestViewModel;

/// What the session's state carries, if it is of that case; the test fails otherwise.
template <typename Case>
Case in(const Session &session)
{
    const auto *const state = std::get_if<Case>(&session.state());
    if (state == nullptr) {
        const auto *const error = std::get_if<Session::Error>(&session.state());
        throw std::runtime_error("the session is in another state " +
                                 (error ? error->text.toStdString() : std::string()));
    }
    return *state;
}

/// The value of one tag in a file, read by the real exiftool.
inline QString tagOf(const fs::path &file, const QString &tag)
{
    const ChildResult result =
        runChild("/usr/bin/exiftool", {"-config", Exiftool::configURL()->string(), "-s3",
                                       "-" + tag.toStdString(), file.string()});
    return QString::fromStdString(result.output).trimmed();
}

/// A session, and a folder for its roll. Settings and resources are the test's own.
class SessionTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        static const TempDir settings;
        ::setenv("XDG_CONFIG_HOME", settings.path().c_str(), 1);
    }
    void SetUp() override { fs::remove_all(applicationFolder()); }
    void TearDown() override { fs::remove_all(applicationFolder()); }

    /// Where an installed program of this executable's place has its resources.
    static fs::path applicationFolder()
    {
        return fs::read_symlink("/proc/self/exe").parent_path().parent_path() / "share" /
               "quillmark";
    }

    /// Has the session run a script in place of exiftool.
    static void standIn(const std::string &script)
    {
        const fs::path configuration = *Exiftool::configURL();
        const fs::path bundle = applicationFolder() / "Quillmark_Quillmark.bundle";
        fs::create_directories(bundle / "exiftool");
        fs::copy_file(configuration, bundle / "quillmark.config");
        std::ofstream(bundle / "exiftool" / "exiftool") << "#!/bin/sh\n" << script << '\n';
        fs::permissions(bundle / "exiftool" / "exiftool", fs::perms::owner_all);
    }

    /// A roll of three frames, the slate second.
    void fillRoll() const
    {
        writeFrame(roll / "01.jpg");
        writeFrame(roll / "02.jpg", {slatePayloadToJson(fullPayload())});
        writeFrame(roll / "03.tif");
    }

    void scan() { await(session.scan(roll.path())); }

    TempDir roll;
    Session session;
};

} // namespace quillmark::test
