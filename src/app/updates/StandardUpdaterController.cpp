// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/StandardUpdaterController.h"

#include "embedding/ResourceBundle.h"

#include <QCoreApplication>
#include <QDesktopServices>

#include <utility>

namespace quillmark {
namespace {

std::optional<UpdateConfiguration> ownConfiguration()
{
    const auto bundle = ResourceBundle::find(ResourceBundle::ownPlaces());
    return bundle ? updateConfigurationIn(*bundle) : std::nullopt;
}

UpdaterSurroundings ownSurroundings()
{
    UpdaterSurroundings surroundings;
    surroundings.currentVersion = QCoreApplication::applicationVersion();
    surroundings.system = ownSystemFacts();
    surroundings.openPackage = &QDesktopServices::openUrl;
    return surroundings;
}

} // namespace

StandardUpdaterController::StandardUpdaterController(bool startingUpdater, QObject *parent)
    : StandardUpdaterController(startingUpdater, ownConfiguration(), ownSurroundings(), parent)
{}

StandardUpdaterController::StandardUpdaterController(
    bool startingUpdater, std::optional<UpdateConfiguration> configuration,
    UpdaterSurroundings surroundings, QObject *parent)
    : QObject(parent), m_updater(std::move(configuration), std::move(surroundings))
{
    if (startingUpdater) {
        m_updater.start();
    }
}

} // namespace quillmark
