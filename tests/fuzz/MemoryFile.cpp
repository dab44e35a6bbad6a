// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "fuzz/MemoryFile.h"

#include <sys/mman.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

namespace quillmark::fuzz {

MemoryFile::MemoryFile(Bytes content)
    : m_fd(::memfd_create("frame", MFD_CLOEXEC)),
      m_path("/proc/self/fd/" + std::to_string(m_fd.get()))
{
    if (!m_fd || ::write(m_fd.get(), content.data(), content.size()) !=
                     static_cast<ssize_t>(content.size())) {
        throw std::runtime_error("cannot make a file in memory");
    }
}

} // namespace quillmark::fuzz
