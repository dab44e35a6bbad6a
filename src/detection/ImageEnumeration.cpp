// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SlateDetector.h"

#include <QByteArray>
#include <QString>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace quillmark::SlateDetector {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 4> imageExtensions{"jpg", "jpeg", "tif", "tiff"};

/// An entry found: its path from the folder, and the text by which it is sorted.
struct Entry {
    std::string path;
    QByteArray composed; ///< the path in NFC; empty where that is the path itself
    std::string_view sortKey() const
    {
        return composed.isEmpty() ? std::string_view(path)
                                  : std::string_view(composed.constData(),
                                                     static_cast<std::size_t>(composed.size()));
    }
};

bool isImageName(std::string_view name)
{
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos) {
        return false;
    }
    std::string extension(name.substr(dot + 1));
    // The four extensions are ASCII, and no other letter has one of theirs as its lower case.
    std::transform(extension.begin(), extension.end(), extension.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return std::find(imageExtensions.begin(), imageExtensions.end(), extension) !=
           imageExtensions.end();
}

Entry makeEntry(std::string path)
{
    const bool isAscii = std::all_of(path.begin(), path.end(),
                                     [](char c) { return static_cast<signed char>(c) >= 0; });
    QByteArray composed;
    if (!isAscii) {
        composed = QString::fromStdString(path).normalized(QString::NormalizationForm_C).toUtf8();
    }
    return {std::move(path), std::move(composed)};
}

struct CloseDirectory {
    void operator()(DIR *directory) const { ::closedir(directory); }
};

/// The kind that the listing tells, or, where the file system leaves that open, a look at it.
bool isDirectory(const dirent &entry, const DIR *directory)
{
    if (entry.d_type != DT_UNKNOWN) {
        return entry.d_type == DT_DIR;
    }
    struct stat status {};
    return ::fstatat(::dirfd(const_cast<DIR *>(directory)), entry.d_name, &status,
                     AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISDIR(status.st_mode);
}

/// Lists one directory; `below` is its path from the folder, with a trailing slash unless
/// it is the folder itself.
void listDirectory(const fs::path &folder, const std::string &below, std::vector<Entry> &images,
                   std::vector<std::string> *subdirectories)
{
    const std::unique_ptr<DIR, CloseDirectory> directory(::opendir((folder / below).c_str()));
    if (!directory) {
        return;
    }
    while (const dirent *const entry = ::readdir(directory.get())) {
        const std::string_view name = entry->d_name;
        if (name.starts_with('.')) {
            continue;
        }
        if (isImageName(name)) {
            images.push_back(makeEntry(below + entry->d_name));
        }
        if (subdirectories != nullptr && isDirectory(*entry, directory.get())) {
            subdirectories->push_back(below + entry->d_name + '/');
        }
    }
}

} // namespace

std::vector<fs::path> enumerateImages(const fs::path &in, bool recursive)
{
    std::error_code failure;
    const fs::path folder = fs::absolute(in, failure);
    if (failure) {
        return {};
    }
    std::vector<Entry> images;
    std::vector<std::string> pending{std::string()};
    while (!pending.empty()) {
        const std::string below = std::exchange(pending.back(), {});
        pending.pop_back();
        listDirectory(folder, below, images, recursive ? &pending : nullptr);
    }
    // UTF-8 sorts like the code points that it encodes. All paths share the folder's part, so
    // the rest decides; names that differ only in bytes that are no UTF-8 fall back to these.
    std::sort(images.begin(), images.end(), [](const Entry &a, const Entry &b) {
        const int order = a.sortKey().compare(b.sortKey());
        return order != 0 ? order < 0 : a.path < b.path;
    });
    std::vector<fs::path> paths;
    paths.reserve(images.size());
    for (const Entry &image : images) {
        paths.push_back(folder / image.path);
    }
    return paths;
}

} // namespace quillmark::SlateDetector
