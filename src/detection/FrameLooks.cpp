// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FrameLooks.h"

#include <algorithm>
#include <utility>

namespace quillmark {
namespace {

constexpr int looksAtMost = 5;
constexpr int wholeSharpening = 8; // quarters
constexpr int rowsTogether = 72;   // that stay in the cache from one look to the next

} // namespace

FrameLooks::FrameLooks(const LumaView &frame)
    : m_frame(frame), m_third(frame, 3), m_ninth(m_third.image(), 3)
{
    m_looks.reserve(looksAtMost);
    addLook(9, 0, 2);
    addLook(3, 0, 2);
    addLook(1, 0, 4);
    addLook(9, wholeSharpening, 2);
    if (static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(frame.height) <=
        mostSearched) {
        addLook(3, wholeSharpening, 2);
    }
}

void FrameLooks::addLook(int scale, int quarters, int rowStep)
{
    const LumaView picture = copyBegun(scale);
    if (std::min(picture.width, picture.height) < leastScannedSide) {
        return;
    }
    if (quarters == 0) {
        m_looks.push_back({scale, std::nullopt, FinderScan(picture, rowStep)});
    } else {
        Sharpening sharpening(picture, quarters);
        FinderScan scan(sharpening.image(), rowStep);
        m_looks.push_back({scale, std::move(sharpening), std::move(scan)});
    }
}

LumaView FrameLooks::copyBegun(int scale) const
{
    return scale == 1 ? m_frame : scale == 3 ? m_third.image() : LumaView(m_ninth.image());
}

int FrameLooks::advanceCopy(int scale, int end)
{
    if (scale == 1) {
        return end;
    }
    const int third = m_third.advance(end);
    return scale == 3 ? third : m_ninth.advance(third);
}

void FrameLooks::Look::advance(int end)
{
    scan.advance(sharpening ? sharpening->advance(end) : end);
}

void FrameLooks::advance(int end)
{
    for (Look &look : m_looks) {
        look.advance(advanceCopy(look.scale, end));
    }
}

std::vector<FinderMark> FrameLooks::marks(int index)
{
    Look &look = m_looks[static_cast<std::size_t>(index)];
    look.advance(advanceCopy(look.scale, m_frame.height));
    std::vector<FinderMark> marks = look.scan.finish();
    look.sharpening.reset();
    return marks;
}

LumaView FrameLooks::copy(int scale)
{
    advanceCopy(scale, m_frame.height);
    return copyBegun(scale);
}

bool FrameLooks::follow(LumaRows &rows, int end)
{
    int there = 0;
    while (m_followed < end) {
        const int next = std::min(m_followed + rowsTogether, end);
        there = there < next ? rows.await(next) : there;
        if (there < next) {
            return false;
        }
        advance(next);
        m_followed = next;
    }
    return true;
}

} // namespace quillmark
