// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "fuzz/Target.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

// Stands in for libFuzzer where there is none: gives a target each file of a folder once, so that
// what once was found stays found with any compiler and sanitizer.

namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path &file)
{
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        throw std::runtime_error("cannot read " + file.string());
    }
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::vector<fs::path> filesIn(const fs::path &folder)
{
    std::vector<fs::path> files(fs::directory_iterator(folder), {});
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace

int main(int argc, char **argv)
try {
    if (argc != 2) {
        std::cerr << "usage: " << argv[0] << " FOLDER\n";
        return 2;
    }
    const std::vector<fs::path> files = filesIn(argv[1]);
    for (const fs::path &file : files) {
        std::cout << file.filename().string() << std::endl;
        const std::string content = contentOf(file);
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(content.data()),
                               content.size());
    }
    std::cout << files.size() << " inputs\n";
    return files.empty() ? 1 : 0;
} catch (const std::exception &error) {
    std::cerr << "escaped: " << error.what() << '\n';
    return 1;
}
