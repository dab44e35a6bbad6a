// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "embedding/ResourceBundle.h"

#include "base/PathText.h"

namespace quillmark::ResourceBundle {

// QUILLMARK_SECOND_BUNDLE is an absolute path: where the build wrote the bundle or, in packages,
// a place that administrators alone can write to. What stands in a bundle is executed.

std::filesystem::path Places::installedBundle() const
{
    return applicationFolder / builtBundle.filename();
}

Places placesOf(const std::filesystem::path &executable)
{
    return {
        .applicationFolder = executable.parent_path().parent_path() / "share" / "quillmark",
        .builtBundle = QUILLMARK_SECOND_BUNDLE,
    };
}

Places ownPlaces()
{
    // The kernel's own answer: bytes as they are, symbolic links resolved, and independent
    // of how argv was filled in. After an upgrade it ends in " (deleted)", which the folder
    // that is asked for here does not show.
    std::error_code untold; // leaves an empty path, and with it the bundle of the build
    return placesOf(std::filesystem::read_symlink("/proc/self/exe", untold));
}

std::optional<std::filesystem::path> find(const Places &places)
{
    for (const std::filesystem::path &bundle : {places.installedBundle(), places.builtBundle}) {
        std::error_code unreadable; // a folder that cannot be looked at is not there for us
        if (std::filesystem::is_directory(bundle, unreadable)) {
            return bundle;
        }
    }
    return std::nullopt;
}

QString missingText(const Places &places)
{
    return QStringLiteral("could not load resource bundle: from ") +
           pathText(places.installedBundle()) + QStringLiteral(" or ") +
           pathText(places.builtBundle);
}

} // namespace quillmark::ResourceBundle
