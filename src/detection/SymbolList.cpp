// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SymbolList.h"

#include "payload/SlatePayloadJson.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace quillmark {
namespace {

PixelPoint centreOf(const SymbolCorners &corners)
{
    PixelPoint centre;
    for (const PixelPoint &corner : corners) {
        centre.x += corner.x / 4;
        centre.y += corner.y / 4;
    }
    return centre;
}

bool contains(const SymbolCorners &corners, PixelPoint p)
{
    // Inside a convex shape a point lies on the same side of every edge.
    int left = 0;
    int right = 0;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const PixelPoint from = corners[i];
        const PixelPoint to = corners[(i + 1) % corners.size()];
        const double side = (to.x - from.x) * (p.y - from.y) - (to.y - from.y) * (p.x - from.x);
        left += side > 0 ? 1 : 0;
        right += side < 0 ? 1 : 0;
    }
    return left == 0 || right == 0;
}

bool standInOnePlace(const QrSymbol &a, const QrSymbol &b)
{
    return contains(a.corners, centreOf(b.corners)) || contains(b.corners, centreOf(a.corners));
}

} // namespace

void SymbolList::add(QrSymbol symbol)
{
    for (QrSymbol &known : m_symbols) {
        if (!standInOnePlace(known, symbol)) {
            continue;
        }
        if (!known.text) {
            known = std::move(symbol);
            return;
        }
        if (!symbol.text || known.text == symbol.text) {
            return;
        }
    }
    m_symbols.push_back(std::move(symbol));
}

bool SymbolList::hasSlate() const
{
    return std::ranges::any_of(m_symbols, [](const QrSymbol &symbol) {
        if (!symbol.text) {
            return false;
        }
        try {
            decodeSlatePayload(*symbol.text);
            return true;
        } catch (const SlateDecodeError &) {
            return false;
        }
    });
}

bool SymbolList::hasTextAt(PixelPoint place) const
{
    return std::ranges::any_of(m_symbols, [place](const QrSymbol &symbol) {
        return symbol.text && contains(symbol.corners, place);
    });
}

std::vector<QrSymbol> SymbolList::unread() const
{
    std::vector<QrSymbol> unread;
    std::ranges::copy_if(m_symbols, std::back_inserter(unread),
                         [](const QrSymbol &symbol) { return !symbol.text; });
    return unread;
}

std::vector<std::optional<QString>> SymbolList::texts() const
{
    std::vector<std::optional<QString>> texts;
    for (const QrSymbol &symbol : m_symbols) {
        texts.push_back(symbol.text);
    }
    return texts;
}

} // namespace quillmark
