// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/ToneStore.h"

namespace quillmark {

ToneStore::ToneStore(int pieces, std::size_t bytes) : m_places(static_cast<std::size_t>(pieces))
{
    // Set aside at once, so that nothing is ever held twice; touched as it is needed.
    m_bytes.reserve(bytes);
}

bool ToneStore::keep(int piece, std::span<const std::uint8_t> tones)
{
    if (tones.size() > m_bytes.capacity() - m_bytes.size()) {
        return false;
    }
    m_places[static_cast<std::size_t>(piece)] = {m_bytes.size(), tones.size(), true};
    m_bytes.insert(m_bytes.end(), tones.begin(), tones.end());
    return true;
}

bool ToneStore::has(int piece) const
{
    return m_places[static_cast<std::size_t>(piece)].kept;
}

std::span<const std::uint8_t> ToneStore::tones(int piece) const
{
    const Place &place = m_places[static_cast<std::size_t>(piece)];
    return std::span(m_bytes).subspan(place.offset, place.size);
}

} // namespace quillmark
