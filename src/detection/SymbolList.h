// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/QrSymbol.h"

#include <vector>

namespace quillmark {

/// The codes found on a frame so far, in the order found, each once. Corners are in pixels
/// of the frame.
class SymbolList
{
public:
    /// Takes a symbol in, unless it stands in the place of one that is known: then it only
    /// gives that one its text where it had none.
    void add(QrSymbol symbol);

    /// Whether one of the texts is a slate.
    bool hasSlate() const;

    /// Whether a text was read from a code that covers a place.
    bool hasTextAt(PixelPoint place) const;

    /// Those without a text.
    std::vector<QrSymbol> unread() const;

    std::vector<std::optional<QString>> texts() const;

private:
    std::vector<QrSymbol> m_symbols;
};

} // namespace quillmark
