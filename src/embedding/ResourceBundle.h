// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <filesystem>
#include <optional>

/// The folder of files that the program needs beside its executable. It is looked for
/// afresh at each call: the cost is one or two stat(2) calls, and nothing goes stale.
namespace quillmark::ResourceBundle {

/// Where a program's resources may be.
struct Places {
    /// The application's own folder. The bundle stands directly in it once the program is
    /// installed; single resources may stand there too.
    std::filesystem::path applicationFolder;
    /// The bundle itself as the build wrote it, for a program that runs from its build folder;
    /// in packages a place on the machine that stands in for it.
    std::filesystem::path builtBundle;

    /// The bundle in its installed place, which is looked at first.
    std::filesystem::path installedBundle() const;
};

/// The places of the program whose executable is given by its absolute path:
/// <prefix>/bin/<program> has the application folder <prefix>/share/quillmark.
Places placesOf(const std::filesystem::path &executable);

/// The places of the running program; where the system does not tell which program that is
/// (no /proc), only the bundle of the build can be found. Any thread.
Places ownPlaces();

/// The first of the two bundles that is a folder, or nothing. Any thread.
std::optional<std::filesystem::path> find(const Places &places);

/// The sentence with which a program ends that has no bundle.
QString missingText(const Places &places);

} // namespace quillmark::ResourceBundle
