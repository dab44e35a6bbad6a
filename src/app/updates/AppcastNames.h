// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QLatin1StringView>

/// The names of the feed format's extension to RSS.
namespace quillmark::AppcastNames {

/// Feeds bind the prefix to the address; some that were written by hand bind it to another one.
inline constexpr QLatin1StringView prefix("sparkle");
inline constexpr QLatin1StringView address("http://www.andymatuschak.org/xml-namespaces/sparkle");

inline constexpr QLatin1StringView version("version");
inline constexpr QLatin1StringView shortVersion("shortVersionString");
inline constexpr QLatin1StringView signature("edSignature");
inline constexpr QLatin1StringView os("os");
inline constexpr QLatin1StringView minimumSystemVersion("minimumSystemVersion");
inline constexpr QLatin1StringView maximumSystemVersion("maximumSystemVersion");
inline constexpr QLatin1StringView hardwareRequirements("hardwareRequirements");
inline constexpr QLatin1StringView channel("channel");
inline constexpr QLatin1StringView format("format");
inline constexpr QLatin1StringView releaseNotesLink("releaseNotesLink");

inline constexpr QLatin1StringView markdown("markdown");
inline constexpr QLatin1StringView plainText("plain-text");

} // namespace quillmark::AppcastNames
