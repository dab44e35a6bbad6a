// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "embedding/ChildStreams.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <thread>
#include <utility>

namespace quillmark {

ChildStreams::ChildStreams(UniqueFd output, UniqueFd errors)
    : m_output{std::move(output), {}}, m_errors{std::move(errors), {}}
{}

bool ChildStreams::readSome(std::chrono::milliseconds patience)
{
    // A closed source is -1, which poll() leaves out.
    std::array<pollfd, 2> polled{pollfd{m_output.source.get(), POLLIN, 0},
                                 pollfd{m_errors.source.get(), POLLIN, 0}};
    if (::poll(polled.data(), polled.size(), static_cast<int>(patience.count())) < 0) {
        if (errno != EINTR) {
            // The system is short of memory. Closing the pipes would end the child in the
            // middle of its work, so it has to be asked again, though not at once.
            std::this_thread::sleep_for(patience);
        }
        return true;
    }
    if (polled[0].revents != 0) {
        m_output.readOnce();
    }
    if (polled[1].revents != 0) {
        m_errors.readOnce();
    }
    return m_output.source || m_errors.source;
}

void ChildStreams::readRest()
{
    m_output.readHeld();
    m_errors.readHeld();
}

/// Reads what is there, up to a piece, and gives how much that was; closes the source at its end,
/// or where it fails again: without a reader the child would be ended by its next word, so once is
/// not enough for that.
std::size_t ChildStreams::Stream::readOnce()
{
    std::array<char, 65536> buffer; // NOLINT(*-member-init): read() fills it
    const ssize_t count = ::read(source.get(), buffer.data(), buffer.size());
    if (count > 0) {
        const auto size = static_cast<std::size_t>(count);
        if (!damaged) {
            const std::size_t wanted = std::min(size, kept - bytes.size());
            bytes.append(buffer.data(), wanted);
            cut = cut || wanted < size;
        }
        return size;
    }
    if (count == 0) {
        source.reset();
    } else if (errno != EINTR) {
        if (damaged) {
            source.reset();
        }
        damaged = true;
        cut = false;
        bytes.clear();
    }
    return 0;
}

void ChildStreams::Stream::readHeld()
{
    int held = 0;
    if (!source || ::ioctl(source.get(), FIONREAD, &held) != 0) {
        held = 0;
    }
    auto rest = static_cast<std::size_t>(held);
    while (source && !damaged && rest > 0) {
        rest -= std::min(rest, readOnce());
    }
    source.reset();
}

} // namespace quillmark
