// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/UpdateConfiguration.h"

#include <QHostAddress>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <string>

namespace quillmark {
namespace {

constexpr std::chrono::seconds shortestInterval = std::chrono::hours(1);
constexpr std::chrono::seconds longestInterval = std::chrono::hours(24 * 366);

bool isLoopback(const QString &host)
{
    const QHostAddress address(host);
    return host == QLatin1String("localhost") || (!address.isNull() && address.isLoopback());
}

/// Nothing for what is no number of seconds.
std::optional<std::chrono::seconds> intervalOf(const QJsonValue &value)
{
    if (!value.isDouble() || !std::isfinite(value.toDouble())) {
        return std::nullopt;
    }
    const double seconds =
        std::clamp(value.toDouble(), static_cast<double>(shortestInterval.count()),
                   static_cast<double>(longestInterval.count()));
    return std::chrono::seconds(std::llround(seconds));
}

} // namespace

bool isSafeAddress(const QUrl &address)
{
    if (!address.isValid() || address.host().isEmpty() || !address.userInfo().isEmpty()) {
        return false;
    }
    return address.scheme() == QLatin1String("https") ||
           (address.scheme() == QLatin1String("http") && isLoopback(address.host()));
}

std::optional<UpdateConfiguration> readUpdateConfiguration(const QByteArray &json)
{
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    UpdateConfiguration configuration;
    configuration.feed = QUrl(object.value(QLatin1String("feed")).toString(), QUrl::StrictMode);
    const auto key =
        publicKeyFromBase64(object.value(QLatin1String("publicKey")).toString().toLatin1());
    if (!isSafeAddress(configuration.feed) || !key) {
        return std::nullopt;
    }
    configuration.publicKey = *key;

    const QJsonValue interval = object.value(QLatin1String("checkInterval"));
    if (!interval.isUndefined()) {
        const auto seconds = intervalOf(interval);
        if (!seconds) {
            return std::nullopt;
        }
        configuration.interval = *seconds;
    }
    const QJsonValue automatic = object.value(QLatin1String("automaticChecks"));
    if (!automatic.isUndefined() && !automatic.isBool()) {
        return std::nullopt;
    }
    configuration.automatic = automatic.toBool(configuration.automatic);
    return configuration;
}

std::optional<UpdateConfiguration> updateConfigurationIn(const std::filesystem::path &bundle)
{
    std::ifstream file(bundle / "updates.json", std::ios::binary);
    const std::string json{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    return readUpdateConfiguration(QByteArray::fromStdString(json));
}

} // namespace quillmark
