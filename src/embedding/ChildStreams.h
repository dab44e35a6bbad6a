// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/UniqueFd.h"

#include <chrono>
#include <cstddef>
#include <string>
#include <utility>

namespace quillmark {

/// The reading ends of a child's output and error pipes, and what came through them.
class ChildStreams
{
public:
    ChildStreams(UniqueFd output, UniqueFd errors);

    /// Reads from whichever stream has something, or waits for the time given. Gives whether
    /// either is still open. Both are served alike: a child that fills one pipe while the other
    /// is waited for would wait for ever itself.
    bool readSome(std::chrono::milliseconds patience);

    /// Reads what the pipes hold at this moment and closes them: what a child wrote that has
    /// ended, though others of its making may hold on to its pipes, and write on.
    void readRest();

    /// How much of each stream is kept. The rest is read and dropped, so that a child which never
    /// stops talking costs no more. That is enough for a line about each of as many files as a
    /// command line can name.
    static constexpr std::size_t kept = std::size_t{8} << 20U;

    /// The beginning of what was read; nothing from a stream of which a part could not be read.
    std::string takeOutput() { return std::move(m_output.bytes); }
    std::string takeErrors() { return std::move(m_errors.bytes); }
    /// Whether more came than was kept.
    bool errorsAreCut() const { return m_errors.cut; }

private:
    struct Stream {
        UniqueFd source;
        std::string bytes;
        bool damaged = false;
        bool cut = false;

        std::size_t readOnce();
        void readHeld();
    };

    Stream m_output;
    Stream m_errors;
};

} // namespace quillmark
