// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/updates/Updater.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace quillmark {

/// Owns the application's updater, made from the configuration in the resource bundle, the
/// application's version, and the desktop's way of opening packages. The main thread.
class StandardUpdaterController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application has one.")
    Q_PROPERTY(quillmark::Updater *updater READ updater CONSTANT)

public:
    /// Whether the updater starts at once.
    explicit StandardUpdaterController(bool startingUpdater, QObject *parent = nullptr);
    /// The same with another configuration and in other surroundings.
    StandardUpdaterController(bool startingUpdater,
                              std::optional<UpdateConfiguration> configuration,
                              UpdaterSurroundings surroundings, QObject *parent = nullptr);

    Updater *updater() { return &m_updater; }

private:
    Updater m_updater;
};

} // namespace quillmark
