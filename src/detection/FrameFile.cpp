// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/FrameFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <limits>
#include <string_view>
#include <utility>

namespace quillmark {

std::optional<FrameFile> FrameFile::open(const std::filesystem::path &file)
{
    // The kind is asked for before opening, because opening alone already does something to
    // a tape or to the writer at the other end of a pipe, and once more afterwards, because
    // the name may stand for something else by then.
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    UniqueFd fd(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (!fd || ::fstat(fd.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    ::posix_fadvise(fd.get(), 0, 0, POSIX_FADV_SEQUENTIAL);
    return FrameFile(std::move(fd), static_cast<std::uint64_t>(status.st_size));
}

std::size_t FrameFile::readAt(std::uint64_t offset, void *out, std::size_t count) const
{
    std::size_t done = 0;
    while (done < count && !m_stop.stop_requested()) {
        const std::uint64_t position = offset + done;
        if (position > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max())) {
            break;
        }
        const ssize_t got = ::pread(m_fd.get(), static_cast<std::byte *>(out) + done, count - done,
                                    static_cast<off_t>(position));
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            break;
        }
        done += static_cast<std::size_t>(got);
    }
    return done;
}

FrameFormat FrameFile::format() const
{
    using namespace std::string_view_literals;
    std::array<char, 4> head{};
    const std::string_view start(head.data(), readAt(0, head.data(), head.size()));
    if (start.starts_with("\xFF\xD8\xFF"sv)) {
        return FrameFormat::jpeg;
    }
    for (const std::string_view magic : {"II*\0"sv, "MM\0*"sv, "II+\0"sv, "MM\0+"sv}) {
        if (start == magic) {
            return FrameFormat::tiff;
        }
    }
    return FrameFormat::unknown;
}

} // namespace quillmark
