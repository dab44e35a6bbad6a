// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/Sheet.h"

#include "support/simulator/Random.h"

#include <array>
#include <cmath>
#include <numbers>

namespace quillmark::test {
namespace {

constexpr float paper = 0.93F;
constexpr float ink = 0.05F;

} // namespace

Sheet::Sheet(const QrMatrix &code, std::uint64_t seed, const SheetOptions &options)
    : m_code(code), m_side(code.size), m_seed(seed), m_options(options)
{}

float Sheet::lightAt(Point p) const
{
    const bool inked = isInked(p);
    switch (m_options.surface) {
    case Surface::halftone:
        return halftoneAt(p, inked);
    case Surface::display:
        return displayAt(p, inked);
    case Surface::paper:
        break;
    }
    return inked ? ink : paper;
}

bool Sheet::isInked(Point p) const
{
    if (p.x >= 0 && p.y >= 0 && p.x < m_side && p.y < m_side) {
        return m_code.isDark(static_cast<int>(p.x), static_cast<int>(p.y));
    }
    if (p.x < 0 || p.x >= m_side) {
        return false;
    }
    const double titleTop = top() + 0.04 * m_side;
    if (p.y >= titleTop && p.y < titleTop + 0.07 * m_side) {
        return p.x < 0.62 * m_side && isLetter(p, titleTop, 0.07 * m_side);
    }
    const double notesTop = m_side + m_options.quietZone;
    return p.y >= notesTop && p.y < bottom() - 0.05 * m_side &&
           isLetter(p, notesTop, 0.035 * m_side);
}

/// Print: lines of letters, each letter a small pattern of strokes.
bool Sheet::isLetter(Point p, double textTop, double letterHeight) const
{
    const double down = (p.y - textTop) / (1.7 * letterHeight);
    const double along = p.x / (0.7 * letterHeight);
    const auto line = static_cast<std::uint64_t>(down);
    const auto letter = static_cast<std::uint64_t>(along);
    const double inLine = (down - static_cast<double>(line)) * 1.7;
    if (inLine >= 1.0) {
        return false;
    }
    const std::uint64_t shape = hash64(m_seed ^ (line << 32) ^ letter);
    if (shape % 6 == 0) {
        return false; // a gap between words
    }
    const auto strokeX = static_cast<unsigned>((along - static_cast<double>(letter)) * 4.0);
    const auto strokeY = static_cast<unsigned>(inLine * 5.0);
    return strokeX < 3 && ((shape >> (8 + strokeY * 3 + strokeX)) & 1U) != 0;
}

/// Dark is mostly dots that run into each other, light a few small ones.
float Sheet::halftoneAt(Point p, bool inked) const
{
    // The usual spot function: two cosines, along the diagonals.
    const double scale = std::numbers::pi * std::numbers::sqrt2 / m_options.pitch;
    const double spot =
        0.5 + 0.25 * (std::cos(scale * (p.x + p.y)) + std::cos(scale * (p.x - p.y)));
    const double covered = inked ? m_options.inkShare : 0.06;
    return spot < covered ? ink : paper;
}

/// A display's pixel: stripes of red, green and blue, of which the eye and a film's luma
/// get 0.299, 0.587 and 0.114, and a gap below and beside.
float Sheet::displayAt(Point p, bool inked) const
{
    constexpr float glow = 0.02F;
    constexpr double gap = 0.15;
    const bool onBezel =
        p.x < left() + 2 || p.x >= right() - 2 || p.y < top() + 2 || p.y >= bottom() - 2;
    if (inked || onBezel) {
        return glow;
    }
    const double along = p.x / m_options.pitch - std::floor(p.x / m_options.pitch);
    const double down = p.y / m_options.pitch - std::floor(p.y / m_options.pitch);
    if (down >= 1 - gap) {
        return glow;
    }
    constexpr std::array stripes{0.299F, 0.587F, 0.114F};
    return stripes[static_cast<std::size_t>(along * 3)] * 3 * paper / static_cast<float>(1 - gap);
}

} // namespace quillmark::test
