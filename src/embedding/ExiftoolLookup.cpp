// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "embedding/ExiftoolLookup.h"

#include "embedding/Exiftool.h"
#include "embedding/ResourceBundle.h"

#include <unistd.h>

#include <algorithm>

namespace quillmark {
namespace {

namespace fs = std::filesystem;

bool isFile(const fs::path &path)
{
    std::error_code unreadable; // what cannot be looked at cannot be used either
    return fs::is_regular_file(path, unreadable);
}

bool isProgram(const fs::path &path)
{
    // A directory may be "executable" too: that is leave to pass through it.
    return isFile(path) && ::access(path.c_str(), X_OK) == 0;
}

} // namespace

std::optional<fs::path> locateExiftool(const std::optional<fs::path> &bundle,
                                       const std::vector<fs::path> &usualPlaces)
{
    if (bundle) {
        fs::path shipped = *bundle / "exiftool" / "exiftool";
        if (isProgram(shipped)) {
            return shipped;
        }
    }
    const auto found = std::find_if(usualPlaces.begin(), usualPlaces.end(), isProgram);
    return found != usualPlaces.end() ? std::optional(*found) : std::nullopt;
}

std::optional<fs::path> findConfiguration(const std::optional<fs::path> &bundle,
                                          const fs::path &applicationFolder)
{
    const fs::path name = "quillmark.config";
    if (bundle && isFile(*bundle / name)) {
        return *bundle / name;
    }
    fs::path single = applicationFolder / name;
    return isFile(single) ? std::optional(std::move(single)) : std::nullopt;
}

std::optional<fs::path> Exiftool::locate()
{
    return locateExiftool(
        ResourceBundle::find(ResourceBundle::ownPlaces()),
        {"/opt/homebrew/bin/exiftool", "/usr/local/bin/exiftool", "/usr/bin/exiftool"});
}

std::optional<fs::path> Exiftool::configURL()
{
    const ResourceBundle::Places places = ResourceBundle::ownPlaces();
    return findConfiguration(ResourceBundle::find(places), places.applicationFolder);
}

} // namespace quillmark
