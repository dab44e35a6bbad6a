// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace quillmark::test {

/// Where the settings are stored; XDG_CONFIG_HOME is the test's own.
inline std::filesystem::path storedSettings()
{
    return std::filesystem::path(::getenv("XDG_CONFIG_HOME")) / "Larkhollow" / "Quillmark";
}

/// Makes it as if nothing had ever been stored.
inline void forgetSettings()
{
    std::filesystem::remove_all(storedSettings());
}

inline void forgetSetting(const std::string &key)
{
    std::filesystem::remove(storedSettings() / key);
}

} // namespace quillmark::test
