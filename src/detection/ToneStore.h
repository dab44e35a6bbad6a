// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace quillmark {

/// Keeps what pieces of an image were decoded to, as long as there is room. For one thread at a
/// time.
class ToneStore
{
public:
    /// `pieces` may be kept, and that many bytes at most.
    ToneStore(int pieces, std::size_t bytes);

    /// False where there is no room for it.
    bool keep(int piece, std::span<const std::uint8_t> tones);

    /// Whether it was kept, be it empty.
    bool has(int piece) const;

    /// What was kept of a piece; valid until the next keep().
    std::span<const std::uint8_t> tones(int piece) const;

private:
    struct Place {
        std::size_t offset = 0;
        std::size_t size = 0;
        bool kept = false;
    };

    std::vector<Place> m_places;
    std::vector<std::uint8_t> m_bytes;
};

} // namespace quillmark
