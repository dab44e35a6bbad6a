// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// Slates that say what no slate should, from the code on the frame to the tags in the files.

#include "manual/LastUsedPayloadStore.h"
#include "manual/ManualEntryDraft.h"
#include "rolls/OddRoll.h"

#include "embedding/TagReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quillmark::test {
namespace {

using namespace Qt::StringLiterals;
using ::testing::HasSubstr;

/// Markup, options, line breaks, controls and a text that turns what follows around.
const QString hostile = u"<img src=x>@/etc/passwd\n-o x\u0001\u202E$Model%f\u2028&lt;\u05D0"_s;

SlatePayload payloadOf(const QString &text)
{
    SlatePayload payload = minimalPayload();
    payload.cameraMake = payload.cameraModel = payload.filmBrand = payload.filmStock = text;
    payload.location = payload.notes = payload.artist = text;
    return payload;
}

SlatePayload written(const fs::path &file)
{
    return decodeSlatePayload(TagReader(file).values(u"XMP-quillmark"_s, u"RawPayload"_s).value(0));
}

TEST_F(OddRoll, aSlatesTextsArriveAsTheyAre)
{
    const fs::path file = writeFrame(roll / "00.jpg", {slatePayloadToJson(payloadOf(hostile))});
    remember(file);
    EXPECT_EQ(ingest(BackupMode::backupOriginals), "");
    EXPECT_EQ(in<Session::Done>(session).outcome.plan.detection.payload, payloadOf(hostile));
    EXPECT_EQ(written(file), payloadOf(hostile));
    expectNothingLost(BackupMode::backupOriginals);
}

TEST_F(OddRoll, aSlateWithATextThatCannotBeHandedOnIsAnErrorThatNamesTheField)
{
    SlatePayload payload = fullPayload();
    payload.notes = u"seen"_s + QChar(u'\0') + u"unseen"_s;
    const fs::path file = writeFrame(roll / "00.jpg", {slatePayloadToJson(payload)});
    remember(file);
    frame("01.jpg");
    for (const BackupMode mode : allBackupModes) {
        EXPECT_THAT(ingest(mode), HasSubstr("U+0000: Notes"));
        expectUntouched();
        expectNoLeftovers(roll.path());
    }
}

TEST_F(OddRoll, textsOfAnEarlierEntryArriveAsTheyAre)
{
    // Without what is trimmed from the ends.
    LastUsedPayloadStore::save(payloadOf(hostile));
    ManualEntryDraft draft;
    draft.prefill(LastUsedPayloadStore::load().value());
    const SlatePayload typed = draft.toPayload(ownGeneratorVersion.toString());
    EXPECT_EQ(typed.notes, hostile);

    const fs::path file = frame("00.jpg");
    session.setState(Session::ManualEntry{roll.path(), {}});
    await(session.submitManual(typed));
    in<Session::Done>(session);
    EXPECT_EQ(written(file), typed);
    EXPECT_EQ(LastUsedPayloadStore::load(), typed);
}

} // namespace
} // namespace quillmark::test
