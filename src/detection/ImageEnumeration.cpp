// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/SlateDetector.h"
#include "detection/WorkerThreads.h"

#include <QByteArray>
#include <QString>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <memory>
#include <memory_resource>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace quillmark::SlateDetector {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 4> imageExtensions{"jpg", "jpeg", "tif", "tiff"};

bool isImageName(std::string_view name)
{
    const std::size_t dot = name.rfind('.');
    std::array<char, 4> lowered{};
    if (dot == std::string_view::npos || name.size() - dot - 1 > lowered.size()) {
        return false;
    }
    const std::string_view extension = name.substr(dot + 1);
    // The four extensions are ASCII, and no other letter has one of theirs as its lower case.
    for (std::size_t i = 0; i < lowered.size() && i < extension.size(); ++i) {
        const char c = extension[i];
        lowered.at(i) = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return std::find(imageExtensions.begin(), imageExtensions.end(),
                     std::string_view(lowered.data(), extension.size())) != imageExtensions.end();
}

/// What is sorted by: the name in NFC, as UTF-8.
QByteArray composed(std::string_view name)
{
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()))
        .normalized(QString::NormalizationForm_C)
        .toUtf8();
}

bool isAscii(std::string_view name)
{
    return std::all_of(name.begin(), name.end(),
                       [](char c) { return static_cast<signed char>(c) >= 0; });
}

struct CloseDirectory {
    void operator()(DIR *directory) const { ::closedir(directory); }
};

/// The kind that the listing tells, or, where the file system leaves that open, a look at it.
bool isDirectory(const dirent &entry, DIR *directory)
{
    if (entry.d_type != DT_UNKNOWN) {
        return entry.d_type == DT_DIR;
    }
    struct stat status {};
    return ::fstatat(::dirfd(directory), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISDIR(status.st_mode);
}

/// A folder of the walk and what it holds, in order. Folders of one parent whose names differ
/// only before normalisation count as one, since what is in them mingles.
///
/// All paths in a folder begin with its own: they are in order if its entries are, where a
/// folder's name is taken with the slash that follows it.
struct Folder {
    struct Subfolder;

    std::vector<std::string> places; ///< the paths, each with a slash at its end
    std::vector<fs::path> images;
    std::vector<Subfolder> subfolders;
};

struct Folder::Subfolder {
    std::size_t imagesBefore; ///< how many of the parent's own
    Folder folder;
};

/// The entries of one folder while they are being sorted.
class Entries
{
public:
    // NOLINTNEXTLINE(*-member-init): of m_buffer nothing is read that was not written
    Entries() { m_entries.reserve(64); }

    void read(const std::string &place, bool withFolders)
    {
        const std::unique_ptr<DIR, CloseDirectory> directory(::opendir(place.c_str()));
        if (!directory) {
            return;
        }
        while (const dirent *const entry = ::readdir(directory.get())) {
            const std::string_view name = entry->d_name;
            if (name.starts_with('.')) {
                continue;
            }
            if (isImageName(name)) {
                add(place, name, false);
            }
            if (withFolders && isDirectory(*entry, directory.get())) {
                add(place, name, true);
            }
        }
    }

    /// Gives the folder what has been read, in order.
    void moveTo(Folder &folder)
    {
        std::sort(m_entries.begin(), m_entries.end(), [](const Entry &a, const Entry &b) {
            // UTF-8 sorts like the code points that it encodes.
            return std::tie(a.key, *a.place, a.name) < std::tie(b.key, *b.place, b.name);
        });
        folder.images.reserve(m_entries.size());
        std::string_view lastFolder;
        for (const Entry &entry : m_entries) {
            std::string path;
            path.reserve(entry.place->size() + entry.name.size());
            path.append(*entry.place).append(entry.name);
            if (!entry.isFolder) {
                folder.images.emplace_back(std::move(path));
                continue;
            }
            if (entry.key != lastFolder) {
                folder.subfolders.push_back({folder.images.size(), {}});
                lastFolder = entry.key;
            }
            folder.subfolders.back().folder.places.push_back(std::move(path));
        }
    }

private:
    struct Entry {
        std::string_view key;
        std::string_view name; ///< as it is, a folder's with its slash
        const std::string *place;
        bool isFolder;
    };

    std::string_view keep(std::string_view text, std::string_view end)
    {
        char *const kept = static_cast<char *>(m_texts.allocate(text.size() + end.size(), 1));
        std::copy(end.begin(), end.end(), std::copy(text.begin(), text.end(), kept));
        return {kept, text.size() + end.size()};
    }

    void add(const std::string &place, std::string_view name, bool isFolder)
    {
        const std::string_view end = isFolder ? "/" : "";
        const std::string_view kept = keep(name, end);
        std::string_view key = kept;
        if (!isAscii(name)) {
            const QByteArray inNfc = composed(name);
            key = keep({inNfc.constData(), static_cast<std::size_t>(inNfc.size())}, end);
        }
        m_entries.push_back({key, kept, &place, isFolder});
    }

    std::array<std::byte, 8192> m_buffer; ///< enough for the usual roll
    std::pmr::monotonic_buffer_resource m_texts{m_buffer.data(), m_buffer.size()};
    std::pmr::vector<Entry> m_entries{&m_texts};
};

void list(Folder &folder, bool withFolders)
{
    Entries entries;
    for (const std::string &place : folder.places) {
        entries.read(place, withFolders);
    }
    entries.moveTo(folder);
}

/// Lists all that is below, a level after the other: the folders of a level on all cores.
void listTree(Folder &top)
{
    for (std::vector<Folder *> level{&top}; !level.empty();) {
        shareOut(static_cast<int>(level.size()),
                 [&level](int i) { list(*level[static_cast<std::size_t>(i)], true); });
        std::vector<Folder *> next;
        for (Folder *folder : level) {
            for (Folder::Subfolder &subfolder : folder->subfolders) {
                next.push_back(&subfolder.folder);
            }
        }
        level = std::move(next);
    }
}

/// Appends the images of a folder and of all below it.
void collect(Folder &folder, std::vector<fs::path> &images)
{
    auto next = folder.images.begin();
    const auto moveUntil = [&](auto end) {
        images.insert(images.end(), std::make_move_iterator(next), std::make_move_iterator(end));
        next = end;
    };
    for (Folder::Subfolder &subfolder : folder.subfolders) {
        moveUntil(folder.images.begin() + static_cast<std::ptrdiff_t>(subfolder.imagesBefore));
        collect(subfolder.folder, images);
    }
    moveUntil(folder.images.end());
}

} // namespace

std::vector<fs::path> enumerateImages(const fs::path &in, bool recursive)
{
    std::error_code failure;
    std::string place = fs::absolute(in, failure).native();
    if (failure) {
        return {};
    }
    if (!place.ends_with('/')) {
        place += '/';
    }
    Folder top;
    top.places.push_back(std::move(place));
    if (!recursive) {
        list(top, false);
        return std::move(top.images);
    }
    listTree(top);
    std::vector<fs::path> images;
    collect(top, images);
    return images;
}

} // namespace quillmark::SlateDetector
