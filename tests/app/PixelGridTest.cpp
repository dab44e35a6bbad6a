// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/PixelGrid.h"

#include <gtest/gtest.h>

#include <cmath>

namespace quillmark {
namespace {

constexpr double almost = 1e-9;

double inPixels(qreal units, qreal scale)
{
    return units * scale;
}

TEST(PixelGrid, givesLinesWholePixels)
{
    struct Case {
        qreal length, scale;
        double pixels;
    };
    for (const auto &[length, scale, pixels] :
         {Case{1, 1, 1}, Case{1, 1.25, 1}, Case{1, 1.5, 1}, Case{1, 2, 2}, Case{2, 1.25, 2},
          Case{2, 1.5, 3}, Case{1, 0.75, 1}, Case{4, 1.25, 5}, Case{0, 1.5, 0}}) {
        EXPECT_NEAR(inPixels(pixelgrid::thickness(length, scale), scale), pixels, almost)
            << length << " at " << scale;
    }
}

TEST(PixelGrid, putsEdgesBetweenPixels)
{
    for (const qreal scale : {1.0, 1.25, 1.5, 1.75, 2.0}) {
        for (qreal at = 10; at < 12; at += 0.1) {
            const QRectF rect = pixelgrid::aligned({at, at, 40.3, 20.7}, scale);
            for (const qreal edge : {rect.left(), rect.top(), rect.right(), rect.bottom()}) {
                EXPECT_NEAR(edge * scale, std::round(edge * scale), almost);
            }
            EXPECT_LE(std::abs(rect.left() - at) * scale, 0.5 + 1e-3);
            EXPECT_LE(std::abs(rect.right() - at - 40.3) * scale, 0.5 + 1e-3);
        }
    }
}

TEST(PixelGrid, keepsNeighboursTogether)
{
    for (const qreal scale : {1.0, 1.25, 1.5, 2.0}) {
        const QRectF left = pixelgrid::aligned({10.3, 0, 33.7, 20}, scale);
        const QRectF right = pixelgrid::aligned({44.0, 0, 50, 20}, scale);
        EXPECT_NEAR(left.right(), right.left(), almost);
    }
}

TEST(PixelGrid, makesLinesAlikeWhereverTheyStand)
{
    for (const qreal scale : {1.0, 1.25, 1.5, 1.75, 2.0}) {
        for (qreal at = 0; at < 3; at += 0.07) {
            const QRectF line = pixelgrid::aligned({0, at, 100, 1}, scale);
            EXPECT_NEAR(line.height(), pixelgrid::thickness(1, scale), almost);
            EXPECT_NEAR(line.top() * scale, std::round(line.top() * scale), almost);
        }
    }
}

TEST(PixelGrid, roundsTheSameWayDespiteSmallErrors)
{
    const QRectF exact = pixelgrid::aligned({10.4, 10.4, 30, 30}, 1.25);
    const QRectF noisy = pixelgrid::aligned({10.4 - 1e-6, 10.4 + 1e-6, 30, 30}, 1.25);
    EXPECT_NEAR(exact.left(), noisy.left(), almost);
    EXPECT_NEAR(exact.top(), noisy.top(), almost);
}

} // namespace
} // namespace quillmark
