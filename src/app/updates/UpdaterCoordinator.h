// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/updates/StandardUpdaterController.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <utility>

namespace quillmark {

/// Starts the updater when it is made, and keeps it as long as it lives: the application has
/// one from its start to its end. The main thread.
class UpdaterCoordinator : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application has one.")
    Q_PROPERTY(quillmark::StandardUpdaterController *controller READ controller CONSTANT)

public:
    explicit UpdaterCoordinator(QObject *parent = nullptr) : QObject(parent), m_controller(true) {}
    /// The same with another configuration and in other surroundings.
    UpdaterCoordinator(std::optional<UpdateConfiguration> configuration,
                       UpdaterSurroundings surroundings, QObject *parent = nullptr)
        : QObject(parent), m_controller(true, std::move(configuration), std::move(surroundings))
    {}

    StandardUpdaterController *controller() { return &m_controller; }

private:
    StandardUpdaterController m_controller;
};

} // namespace quillmark
