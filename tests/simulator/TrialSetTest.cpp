// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/TrialSet.h"
#include "payload/SlatePayloadJson.h"
#include "support/simulator/Equalizer.h"
#include "support/simulator/Oracle.h"
#include "support/simulator/Photo.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace quillmark::test {
namespace {

template <typename... Arguments>
bool readsAtLast(const Arguments &...arguments)
{
    return askOracle(arguments...).readsEqualized;
}

TEST(TrialSet, trialsCanBeMadeAgain)
{
    const Trial trial = makeTrial(4, 11);
    EXPECT_EQ(trial.payload, makeTrial(4, 11).payload);
    EXPECT_EQ(trial.frame.seed, makeTrial(4, 11).frame.seed);
    EXPECT_NE(trial.frame.seed, makeTrial(4, 23).frame.seed);
    EXPECT_NE(trial.frame.seed, makeTrial(5, 11).frame.seed);
}

TEST(TrialSet, theSameTrialHasTheSamePixels)
{
    // Of the first small frames that go through a file.
    int compared = 0;
    for (int index = 0; compared < 2; ++index) {
        const Trial trial = makeTrial(9, index);
        if (trial.frame.width * trial.frame.height < 2'000'000 &&
            trial.file.format != FrameFormat::none) {
            EXPECT_EQ(storedLuma(trial.frame, trial.file).pixels,
                      storedLuma(trial.frame, trial.file).pixels);
            ++compared;
        }
    }
}

TEST(TrialSet, difficultiesTakeTurnsAndStayInTheirRange)
{
    std::set<Difficulty> seen;
    int moderate = 0;
    constexpr int trials = 600;
    for (int index = 0; index < trials; ++index) {
        const Trial trial = makeTrial(3, index);
        const SimulatedFrame &frame = trial.frame;
        const SimulatedCard &card = frame.cards.at(0);
        seen.insert(trial.difficulty);
        const int longSide = std::max(frame.width, frame.height);
        EXPECT_GE(longSide, 1500);
        EXPECT_LE(longSide, 12000);
        moderate += frame.width * frame.height <= 9'000'000 ? 1 : 0;
        EXPECT_GE(card.code.size, 17 + 4 * 8);
        EXPECT_LE(card.code.size, 17 + 4 * 25);
        EXPECT_GE(card.pose.modulePixels, 2);
        EXPECT_LE(card.pose.modulePixels, 20);
        EXPECT_LE(card.pose.perspective, 30);
        EXPECT_GE(frame.film.contrast, 0.15);
        EXPECT_GE(trial.file.quality, 50);
    }
    EXPECT_EQ(seen.size(), allDifficulties.size());
    EXPECT_GT(moderate, trials * 8 / 10);
}

TEST(TrialSet, thePayloadIsASlate)
{
    for (int index = 0; index < 50; ++index) {
        EXPECT_NO_THROW(decodeSlatePayload(QString::fromUtf8(makeTrial(1, index).payload)));
    }
}

TEST(TrialSet, everyCodeLiesInItsFrame)
{
    for (int index = 0; index < 200; ++index) {
        const Trial trial = makeTrial(6, index);
        const SimulatedFrame &frame = trial.frame;
        for (const Point corner : geometryOf(frame, frame.cards.front()).codeCorners()) {
            EXPECT_TRUE(corner.x > 0 && corner.y > 0 && corner.x < frame.width &&
                        corner.y < frame.height)
                << index << ": " << corner.x << ", " << corner.y;
        }
    }
}

SimulatedFrame frameOf(const QrMatrix &code)
{
    SimulatedFrame frame;
    frame.width = 700;
    frame.height = 700;
    SimulatedCard card;
    card.code = code;
    card.pose = {350, 320, 5, 24, 15, 40};
    card.blur = 0.3;
    frame.cards.push_back(card);
    frame.film.grain = 0.03;
    return frame;
}

TEST(Oracle, readsWhatIsThere)
{
    const QByteArray content(200, 'o');
    SimulatedFrame frame = frameOf(encodeQr(content));
    for (const bool negative : {false, true}) {
        frame.film.negative = negative;
        const SimulatedCard &card = frame.cards.front();
        EXPECT_TRUE(
            readsAtLast(renderLuma(frame), card.code, geometryOf(frame, card), negative, content));
    }
}

TEST(Oracle, doesNotReadWhatIsNotThere)
{
    const QByteArray content(200, 'o');
    const QrMatrix code = encodeQr(content);
    SimulatedFrame frame = frameOf(code);
    const CardGeometry geometry = geometryOf(frame, frame.cards.front());
    frame.cards.clear();
    EXPECT_FALSE(readsAtLast(renderLuma(frame), code, geometry, false, content));
    // Nor another content of the same size.
    frame = frameOf(encodeQr(QByteArray(200, 'p')));
    EXPECT_FALSE(readsAtLast(renderLuma(frame), code, geometry, false, content));
}

TEST(Oracle, doesNotReadThroughTooMuchGrain)
{
    const QByteArray content(200, 'o');
    SimulatedFrame frame = frameOf(encodeQr(content));
    frame.film.contrast = 0.1;
    frame.film.grain = 0.5;
    const SimulatedCard &card = frame.cards.front();
    EXPECT_FALSE(
        readsAtLast(renderLuma(frame), card.code, geometryOf(frame, card), false, content));
}

TEST(Equalizer, decidesModulesThatHaveRunIntoEachOther)
{
    const QrMatrix code = encodeQr(QByteArray(300, 'q'), QrLevel::L);
    // Less than a third of a module's tone is its own: cut at the middle, many are wrong.
    ModuleGrid tones(code.size);
    for (int row = 0; row < code.size; ++row) {
        for (int column = 0; column < code.size; ++column) {
            float tone = 0;
            for (int i = 0; i < 9; ++i) {
                const int x = std::clamp(column + i % 3 - 1, 0, code.size - 1);
                const int y = std::clamp(row + i / 3 - 1, 0, code.size - 1);
                const float share = i == 4 ? 0.3F : i % 2 == 1 ? 0.12F : 0.055F;
                tone += code.isDark(x, y) ? 0 : 255 * share;
            }
            tones.set(column, row, tone);
        }
    }
    QrMatrix bits = code;
    for (int row = 0; row < code.size; ++row) {
        for (int column = 0; column < code.size; ++column) {
            bits.cellAt(column, row) = tones.at(column, row) < 128 ? 1 : 0;
        }
    }
    const auto errors = [&code](const QrMatrix &got) {
        int wrong = 0;
        for (std::size_t i = 0; i < code.cells.size(); ++i) {
            wrong += got.cells[i] != code.cells[i] ? 1 : 0;
        }
        return wrong;
    };
    const int before = errors(bits);
    ASSERT_GT(before, 100);
    const Equalizer equalizer(tones);
    for (int i = 0; i < 6; ++i) {
        bits = equalizer.improve(bits);
    }
    EXPECT_LT(errors(bits), before / 10);
}

TEST(PhotoSet, photosCanBeMadeAgainAndStayInTheirRange)
{
    for (int index = 0; index < 40; ++index) {
        const Photo photo = makePhoto(2, index);
        EXPECT_EQ(photo.kind, allPhotoKinds[static_cast<std::size_t>(index) % 5]);
        EXPECT_GE(photo.luma.width, 150);
        EXPECT_LE(photo.luma.width, 1200);
        EXPECT_LE(photo.modules, 57);
        EXPECT_FALSE(photo.content.isEmpty());
        if (index < 10) {
            EXPECT_EQ(photo.luma.pixels, makePhoto(2, index).luma.pixels);
        }
    }
}

} // namespace
} // namespace quillmark::test
