// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffLzw.h"

#include <QtEndian>

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace quillmark {
namespace {

constexpr std::size_t clearCode = 256;
constexpr std::size_t firstFree = 258;
constexpr unsigned leastBits = 9;
constexpr unsigned mostBits = 12;

/// The window begins with these, so that a code of a single byte is like any other.
constexpr std::size_t singles = 256;

/// Codes that are unpacked between two checks: a refill gives bits for as many.
constexpr std::size_t together = 4;
static_assert(together * mostBits <= 56);

/// What is copied at once. Nothing is checked for each string, so this much more than some of the
/// longest may be written behind what is asked for.
constexpr std::size_t copied = 16;
constexpr std::size_t longest = 5119;
constexpr std::size_t slack = together * longest + 2 * copied;

/// Between two clearings there may be this much, if each string is the one before and one byte
/// more. It must all be there, because strings are made of what was unpacked before.
constexpr std::size_t streamWindow = 16U << 20U;

/// Once there is more than this, a clearing is used to begin anew.
constexpr std::size_t streamKept = 2U << 20U;

/// Packed bytes that are read at once.
constexpr std::size_t streamInput = 64U << 10U;

/// The bits of the next code: one code earlier more of them than needed, as the format has it.
unsigned widthFor(std::size_t free)
{
    return std::clamp(static_cast<unsigned>(std::bit_width(free + 1)), leastBits, mostBits);
}

void copyBlock(std::uint8_t *to, const std::uint8_t *from)
{
    std::array<std::uint8_t, copied> block{};
    std::memcpy(block.data(), from, copied);
    std::memcpy(to, block.data(), copied);
}

/// Copies whole blocks, up to `copied` - 1 bytes too many. The last byte of the code that comes
/// next is not there yet: it is the first one.
inline void copyString(std::uint8_t *window, std::size_t to, std::size_t from, std::size_t length,
                       bool isNext)
{
    copyBlock(window + to, window + from);
    for (std::size_t done = copied; done < length; done += copied) {
        copyBlock(window + to + done, window + from + done);
    }
    if (isNext) {
        window[to + length - 1] = window[from];
    }
}

} // namespace

std::span<std::uint8_t> TiffLzw::unpack(const FrameFile &file, const TiffSpan &packed,
                                        std::size_t size)
{
    clearWindow();
    enlargeWindow(singles + size + slack);
    // Twice as much as nothing could be packed better.
    const std::uint64_t count = std::min<std::uint64_t>(packed.count, 2 * size + 4096);
    setInput(file, {packed.offset, count}, static_cast<std::size_t>(count));
    if (run(singles + size, m_window.size()) != Stop::enough) {
        return {};
    }
    return std::span(m_window).subspan(singles, size);
}

void TiffLzw::begin(const FrameFile &file, const TiffSpan &packed)
{
    clearWindow();
    setInput(file, packed, streamInput);
}

std::span<const std::uint8_t> TiffLzw::next(std::size_t size)
{
    for (;;) {
        const std::size_t end = m_read + size;
        if (end + slack > streamWindow) {
            close();
            return {};
        }
        enlargeWindow(end + slack);
        const Stop stop = run(end, streamKept);
        if (stop == Stop::failed) {
            close();
            return {};
        }
        if (stop == Stop::enough) {
            return std::span(m_window).subspan(std::exchange(m_read, end), size);
        }
        std::memmove(m_window.data() + singles, m_window.data() + m_read, m_written - m_read);
        m_written -= m_read - singles;
        m_read = singles;
    }
}

/// Has nothing more come: what stands behind the end of a strip is none of its rows.
void TiffLzw::close()
{
    m_read = m_written;
    m_bits = {};
    m_inputAt = m_inputEnd;
    m_offset = m_fileEnd;
}

void TiffLzw::clearWindow()
{
    enlargeWindow(singles);
    for (std::size_t i = 0; i < singles; ++i) {
        m_window[i] = static_cast<std::uint8_t>(i);
    }
    m_read = singles;
    m_written = singles;
}

void TiffLzw::enlargeWindow(std::size_t size)
{
    if (m_window.size() < size) {
        m_window.resize(size);
    }
}

void TiffLzw::setInput(const FrameFile &file, const TiffSpan &packed, std::size_t atOnce)
{
    m_file = &file;
    m_offset = packed.offset;
    m_fileEnd = packed.offset + packed.count;
    if (m_input.size() < atOnce) {
        m_input.resize(atOnce);
    }
    m_inputAt = 0;
    m_inputEnd = 0;
    m_bits = {};
    m_free = 0;
    m_last = {};
    for (std::size_t i = 0; i < singles; ++i) {
        m_strings[i] = String(i, 1);
    }
    clearStrings(m_strings.size());
}

/// Forgets the strings before `end`.
void TiffLzw::clearStrings(std::size_t end)
{
    std::fill_n(m_strings.begin() + singles, end - singles, String{});
}

/// As many bits as go in, or all that are left. For where the input may end.
void TiffLzw::refill()
{
    while (m_bits.count <= 56) {
        if (m_inputAt == m_inputEnd) {
            const auto wanted = static_cast<std::size_t>(
                std::min<std::uint64_t>(m_input.size(), m_fileEnd - m_offset));
            m_inputAt = 0;
            m_inputEnd = m_file->readAt(m_offset, m_input.data(), wanted);
            m_offset = m_inputEnd < wanted ? m_fileEnd : m_offset + m_inputEnd;
            if (m_inputEnd == 0) {
                break;
            }
        }
        m_bits.all |= std::uint64_t{m_input[m_inputAt++]} << (56U - m_bits.count);
        m_bits.count += 8;
    }
}

/// Unpacks until the window is filled to `end`, and by a few strings more at most, or to where it
/// is cleared behind `clearAt`.
TiffLzw::Stop TiffLzw::run(std::size_t end, std::size_t clearAt)
{
    while (m_written < end) {
        if (!m_last.isNone()) {
            switch (widthFor(m_free)) {
            case 9:
                runFast<9>(end);
                break;
            case 10:
                runFast<10>(end);
                break;
            case 11:
                runFast<11>(end);
                break;
            default:
                runFast<12>(end);
            }
        }
        if (m_written < end) {
            const Stop stop = step(clearAt);
            if (stop != Stop::enough) {
                return stop;
            }
        }
    }
    return Stop::enough;
}

/// One code, of whatever kind.
TiffLzw::Stop TiffLzw::step(std::size_t clearAt)
{
    const unsigned width = widthFor(m_free);
    refill();
    if (m_bits.count < width) {
        return Stop::failed;
    }
    const auto code = static_cast<std::size_t>(m_bits.all >> (64U - width));
    m_bits.all <<= width;
    m_bits.count -= width;
    if (code == clearCode) {
        clearStrings(std::max(m_free + 1, firstFree));
        m_free = firstFree;
        m_last = {};
        return m_written > clearAt ? Stop::cleared : Stop::enough;
    }
    if (m_free == 0 || m_free >= codes) {
        return Stop::failed;
    }
    const bool isFirst = m_last.isNone();
    if (!isFirst) {
        m_strings[m_free] = m_last.longer();
    }
    const String string = m_strings[code];
    if (string.isNone()) {
        return Stop::failed;
    }
    copyString(m_window.data(), m_written, string.start(), string.length(), code == m_free);
    m_free += isFirst ? 0 : 1;
    m_last = string.at(m_written);
    m_written += string.length();
    return Stop::enough;
}

/// Goes on while codes have this many bits and stand for strings, and there is input for some of
/// them. To be called behind a string.
template <unsigned width>
void TiffLzw::runFast(std::size_t end)
{
    std::uint8_t *const window = m_window.data();
    // The compiler cannot keep members in registers beside bytes that are written.
    const std::uint8_t *const input = m_input.data();
    const std::size_t inputEnd = m_inputEnd;
    constexpr std::size_t freeEnd = width < mostBits ? (1U << width) - 1 : codes;
    std::size_t inputAt = m_inputAt;
    Bits bits = m_bits;
    std::size_t free = m_free;
    String last = m_last;
    std::size_t written = m_written;
    const auto unpackOne = [&] {
        const auto code = static_cast<std::size_t>(bits.all >> (64U - width));
        m_strings[free] = last.longer();
        const String string = m_strings[code];
        if (string.isNone()) {
            return false;
        }
        bits.all <<= width;
        bits.count -= width;
        copyString(window, written, string.start(), string.length(), code == free);
        ++free;
        last = string.at(written);
        written += string.length();
        return true;
    };
    bool isPlain = true;
    while (isPlain && written < end && free + together <= freeEnd && inputEnd - inputAt >= 8) {
        bits.all |= qFromBigEndian<std::uint64_t>(input + inputAt) >> bits.count;
        inputAt += (63U - bits.count) / 8;
        bits.count |= 56U;
        isPlain = unpackOne();
        for (std::size_t i = 1; i < together; ++i) {
            isPlain = isPlain && unpackOne();
        }
    }
    m_inputAt = inputAt;
    m_bits = bits;
    m_free = free;
    m_last = last;
    m_written = written;
}

} // namespace quillmark
