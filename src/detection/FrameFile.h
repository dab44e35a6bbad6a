// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/UniqueFd.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <stop_token>
#include <utility>

namespace quillmark {

/// What a file is, going by its first bytes.
enum class FrameFormat { unknown, jpeg, tiff };

/// The bytes of an image file. They are read and never mapped: a mapping of a file that
/// somebody shortens meanwhile ends the process. Reading is safe from several threads.
class FrameFile
{
public:
    /// Opens a regular file, which may stand behind symbolic links; nothing for everything
    /// else. Never blocks on a pipe and never opens a device.
    static std::optional<FrameFile> open(const std::filesystem::path &file);

    /// In bytes, at the time of opening.
    std::uint64_t size() const { return m_size; }

    /// Reads up to `count` bytes from `offset` on and gives how many came: fewer only where
    /// the file ends or cannot be read further.
    std::size_t readAt(std::uint64_t offset, void *out, std::size_t count) const;

    FrameFormat format() const;

    /// Has the file end for every read from the moment on at which a stop is asked for, so
    /// that whoever decodes it comes to an end soon.
    void endAt(std::stop_token stop) { m_stop = std::move(stop); }

    /// Whether a stop was asked for.
    bool isEnded() const { return m_stop.stop_requested(); }

private:
    FrameFile(UniqueFd fd, std::uint64_t size) : m_fd(std::move(fd)), m_size(size) {}

    UniqueFd m_fd;
    std::uint64_t m_size;
    std::stop_token m_stop;
};

} // namespace quillmark
