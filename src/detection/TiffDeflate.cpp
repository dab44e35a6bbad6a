// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffDeflate.h"

#include <algorithm>
#include <cstddef>
#include <new>

namespace quillmark {
namespace {

/// What does not get smaller by packing gets hardly larger; a declared size beyond this is not
/// believed.
constexpr std::uint64_t packedLimit(std::uint64_t unpacked)
{
    return 2 * unpacked + 4096;
}

} // namespace

bool TiffDeflate::unpack(const FrameFile &file, const TiffSpan &packed, std::span<std::uint8_t> out)
{
    if (!m_decoder) {
        m_decoder.reset(libdeflate_alloc_decompressor());
        if (!m_decoder) {
            throw std::bad_alloc();
        }
    }
    const auto count = static_cast<std::size_t>(std::min(packed.count, packedLimit(out.size())));
    if (m_packed.size() < count) {
        m_packed.resize(count);
    }
    const std::size_t got = file.readAt(packed.offset, m_packed.data(), count);
    return libdeflate_zlib_decompress(m_decoder.get(), m_packed.data(), got, out.data(), out.size(),
                                      nullptr) == LIBDEFLATE_SUCCESS;
}

} // namespace quillmark
