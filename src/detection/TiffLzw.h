// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FrameFile.h"
#include "detection/TiffDeflate.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace quillmark {

/// Unpacks strips or tiles in LZW (TIFF 6.0, section 13), in one go or while they are read. Only
/// what is flawless: libtiff knows how to get along with the rest.
class TiffLzw
{
public:
    /// The first `size` bytes of a strip or tile, which may be changed and stay valid until the
    /// next call; none where it is damaged or shorter. The whole of it is held. Throws
    /// std::bad_alloc.
    std::span<std::uint8_t> unpack(const FrameFile &file, const TiffSpan &packed, std::size_t size);

    /// Begins to read a strip of any size. The file outlives the reading. Throws std::bad_alloc.
    void begin(const FrameFile &file, const TiffSpan &packed);

    /// The next `size` bytes; none where these cannot be had in full, and then nothing more
    /// comes. They stay valid until the next call.
    std::span<const std::uint8_t> next(std::size_t size);

private:
    static constexpr std::size_t codes = 5119;

    /// What a code stands for: some bytes of the window, or none where it stands for nothing yet
    /// or has a meaning of its own. In one number, which is stored and loaded at once.
    class String
    {
    public:
        String() = default;
        String(std::size_t start, std::size_t length) : m_all(start | length << lengthShift) {}

        bool isNone() const { return m_all == 0; }
        std::size_t start() const { return m_all & startMask; }
        std::size_t length() const { return m_all >> lengthShift; }
        /// As many bytes in another place.
        String at(std::size_t start) const { return String((m_all & ~startMask) | start); }
        /// With the byte behind it, which is the first one of the string that comes next.
        String longer() const { return String(m_all + (std::uint64_t{1} << lengthShift)); }

    private:
        static constexpr unsigned lengthShift = 32;
        static constexpr std::uint64_t startMask = (std::uint64_t{1} << lengthShift) - 1;

        explicit String(std::uint64_t all) : m_all(all) {}

        std::uint64_t m_all = 0;
    };

    /// The next bits, from the highest on. There may be some behind the counted ones, which
    /// are those that really come next.
    struct Bits {
        std::uint64_t all = 0;
        unsigned count = 0;
    };

    enum class Stop { enough, cleared, failed };

    void close();
    void clearWindow();
    void enlargeWindow(std::size_t size);
    void setInput(const FrameFile &file, const TiffSpan &packed, std::size_t atOnce);
    void clearStrings(std::size_t end);
    void refill();
    Stop run(std::size_t end, std::size_t clearAt);
    Stop step(std::size_t clearAt);
    template <unsigned width>
    void runFast(std::size_t end);

    const FrameFile *m_file = nullptr;
    std::uint64_t m_offset = 0; ///< of what is still to be read, up to m_fileEnd
    std::uint64_t m_fileEnd = 0;
    std::vector<std::uint8_t> m_input;
    std::size_t m_inputAt = 0;
    std::size_t m_inputEnd = 0;
    Bits m_bits;

    std::array<String, codes + 1> m_strings{};
    std::size_t m_free = 0; ///< the code that comes next; 0 before the first clearing
    String m_last{};        ///< that before; without length right behind a clearing

    std::vector<std::uint8_t> m_window; ///< all single bytes, and what was unpacked
    std::size_t m_read = 0;
    std::size_t m_written = 0;
};

} // namespace quillmark
