// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/Preloader.h"
#include "app/Theme.h"

#include <QFontMetricsF>
#include <QQmlContext>
#include <QQmlEngine>

#include <algorithm>

namespace quillmark {

void Preloader::setWindow(QQuickWindow *window)
{
    if (m_window == window) {
        return;
    }
    m_window = window;
    connect(window, &QQuickWindow::frameSwapped, this, &Preloader::load,
            static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
    Q_EMIT windowChanged();
}

bool Preloader::isReady() const
{
    return !m_components.empty() &&
           std::ranges::all_of(m_components, [](const auto &each) { return each->isReady(); });
}

void Preloader::load()
{
    // A font is looked for when it is first measured.
    const ThemeFont fonts;
    for (const QFont &font : {fonts.title, fonts.caption, fonts.mono}) {
        QFontMetricsF(font).horizontalAdvance(QStringLiteral("0"));
    }
    for (const QString &file : std::as_const(m_files)) {
        auto component = std::make_unique<QQmlComponent>(qmlEngine(this));
        connect(component.get(), &QQmlComponent::statusChanged, this, &Preloader::readyChanged);
        component->loadUrl(qmlContext(this)->resolvedUrl(QUrl(file)), QQmlComponent::Asynchronous);
        m_components.push_back(std::move(component));
    }
}

} // namespace quillmark
