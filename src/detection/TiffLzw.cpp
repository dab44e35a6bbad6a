// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/TiffLzw.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace quillmark {
namespace {

constexpr std::size_t clearCode = 256;
constexpr std::size_t endCode = 257;
constexpr std::size_t firstFree = 258;
constexpr unsigned leastBits = 9;
constexpr unsigned mostBits = 12;

/// The window begins with these, so that a code of a single byte is like any other.
constexpr std::size_t singles = 256;

/// What is copied at once. Nothing is checked for each string, so this much more than the longest
/// may be written behind what is asked for.
constexpr std::size_t copied = 16;
constexpr std::size_t longest = 5119;
constexpr std::size_t slack = longest + 2 * copied;

/// Between two clearings there may be this much, if each string is the one before and one byte
/// more. It must all be there, because strings are made of what was unpacked before.
constexpr std::size_t streamWindow = 16U << 20U;

/// Once there is more than this, a clearing is used to begin anew.
constexpr std::size_t streamKept = 2U << 20U;

/// Packed bytes that are read at once.
constexpr std::size_t streamInput = 64U << 10U;

std::uint64_t bigEndian(const std::uint8_t *bytes)
{
    std::uint64_t value = 0;
    for (int i = 0; i < 8; ++i) {
        value = value << 8U | bytes[i];
    }
    return value;
}

/// The bits of the next code: one code earlier more of them than needed, as the format has it.
unsigned widthFor(std::size_t free)
{
    return std::clamp(static_cast<unsigned>(std::bit_width(free + 1)), leastBits, mostBits);
}

/// Whole blocks, up to `copied` - 1 bytes too many. What is needed of the source lies before
/// the place that is written.
void copyBlocks(std::uint8_t *to, const std::uint8_t *from, std::size_t count)
{
    std::size_t done = 0;
    do {
        std::array<std::uint8_t, copied> block{};
        std::memcpy(block.data(), from + done, copied);
        std::memcpy(to + done, block.data(), copied);
        done += copied;
    } while (done < count);
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
        m_strings[i] = {static_cast<std::uint32_t>(i), 1};
    }
}

/// As many bits as go in, or all that are left. For where the input may end.
TiffLzw::Bits TiffLzw::refilled(Bits bits)
{
    while (bits.count <= 56) {
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
        bits.all |= std::uint64_t{m_input[m_inputAt++]} << (56U - bits.count);
        bits.count += 8;
    }
    return bits;
}

/// Unpacks until the window is filled to `end`, and by a string more at most, or to where it is
/// cleared behind `clearAt`.
TiffLzw::Stop TiffLzw::run(std::size_t end, std::size_t clearAt)
{
    std::uint8_t *const window = m_window.data();
    // The compiler cannot keep members in registers beside bytes that are written.
    const std::uint8_t *const input = m_input.data();
    std::size_t inputAt = m_inputAt;
    std::size_t inputEnd = m_inputEnd;
    Bits bits = m_bits;
    std::size_t free = m_free;
    String last = m_last;
    std::size_t written = m_written;
    unsigned width = widthFor(free);
    Stop stop = Stop::enough;
    while (written < end) {
        if (bits.count < mostBits) {
            if (inputEnd - inputAt >= 8) {
                bits.all |= bigEndian(input + inputAt) >> bits.count;
                inputAt += (63U - bits.count) / 8;
                bits.count |= 56U;
            } else {
                m_inputAt = inputAt;
                bits = refilled(bits);
                inputAt = m_inputAt;
                inputEnd = m_inputEnd;
                if (bits.count < width) {
                    stop = Stop::failed;
                    break;
                }
            }
        }
        const auto code = static_cast<std::size_t>(bits.all >> (64U - width));
        bits.all <<= width;
        bits.count -= width;
        if (code == clearCode) {
            free = firstFree;
            last = {};
            width = leastBits;
            if (written > clearAt) {
                stop = Stop::cleared;
                break;
            }
            continue;
        }
        // What stands behind the string before is the first byte of this one.
        m_strings[free] = {last.start, last.length + 1};
        const bool isFirst = last.length == 0;
        if (code == endCode || code > free - (isFirst ? 1 : 0) || free >= codes || free == 0) {
            stop = Stop::failed;
            break;
        }
        const String string = m_strings[code];
        copyBlocks(window + written, window + string.start, string.length);
        if (code == free) {
            // Its last byte was not there yet.
            window[written + string.length - 1] = window[string.start];
        }
        if (!isFirst) {
            width = widthFor(++free);
        }
        last = {static_cast<std::uint32_t>(written), string.length};
        written += string.length;
    }
    m_inputAt = inputAt;
    m_bits = bits;
    m_free = free;
    m_last = last;
    m_written = written;
    return stop;
}

} // namespace quillmark
