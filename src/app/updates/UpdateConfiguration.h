// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/updates/Signature.h"

#include <QByteArray>
#include <QUrl>

#include <chrono>
#include <filesystem>
#include <optional>

namespace quillmark {

/// Where updates come from, who signs them, and when they are looked for.
struct UpdateConfiguration {
    QUrl feed;
    PublicKey publicKey{};
    std::chrono::seconds interval = std::chrono::hours(24); ///< an hour at least
    bool automatic = true; ///< whether they are looked for without being asked
};

/// Whether anything may be fetched from there: over HTTPS, or over plain HTTP from this very
/// machine, which is how a feed is tried before it is published. Any thread.
bool isSafeAddress(const QUrl &address);

/// Reads the configuration's JSON: "feed" and "publicKey" (base64), and, where they are given,
/// "checkInterval" in seconds and "automaticChecks". Nothing where the first two are missing or
/// unusable, or where any has another type than it should: half a configuration is none.
/// Any thread.
std::optional<UpdateConfiguration> readUpdateConfiguration(const QByteArray &json);

/// The configuration in a resource bundle: its file updates.json. Any thread.
std::optional<UpdateConfiguration> updateConfigurationIn(const std::filesystem::path &bundle);

} // namespace quillmark
