// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace quillmark::test {

/// A folder of its own for one test, removed with everything in it.
class TempDir
{
public:
    TempDir()
    {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "quillmark-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("cannot make a temporary folder");
        }
        m_path = std::filesystem::canonical(pattern);
    }
    TempDir(const TempDir &) = delete;
    TempDir &operator=(const TempDir &) = delete;
    ~TempDir()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    const std::filesystem::path &path() const { return m_path; }

    std::filesystem::path operator/(const std::filesystem::path &name) const
    {
        return m_path / name;
    }

    /// Writes a file, making the folders above it, and gives its path.
    std::filesystem::path write(const std::filesystem::path &name, std::string_view content) const
    {
        std::filesystem::path file = m_path / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        out.write(content.data(), static_cast<std::streamsize>(content.size()));
        if (!out.flush()) {
            throw std::runtime_error("cannot write " + file.string());
        }
        return file;
    }

private:
    std::filesystem::path m_path;
};

/// The bytes of a file.
inline std::string readFile(const std::filesystem::path &file)
{
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        throw std::runtime_error("cannot read " + file.string());
    }
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

} // namespace quillmark::test
