// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/UniqueFd.h"

#include <chrono>
#include <string>

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

    /// What was read; nothing from a stream of which a part could not be read.
    std::string takeOutput() { return std::move(m_output.bytes); }
    std::string takeErrors() { return std::move(m_errors.bytes); }

private:
    struct Stream {
        UniqueFd source;
        std::string bytes;
        bool damaged = false;

        void readOnce();
        void readHeld();
    };

    Stream m_output;
    Stream m_errors;
};

} // namespace quillmark
