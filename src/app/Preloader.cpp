// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/Preloader.h"
#include "app/Theme.h"

#include <QFontMetricsF>
#include <QQmlContext>
#include <QQmlEngine>

#include <algorithm>
#include <utility>

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

void Preloader::load()
{
    for (const QString &file : std::as_const(m_files)) {
        auto component = std::make_unique<QQmlComponent>(qmlEngine(this));
        component->loadUrl(qmlContext(this)->resolvedUrl(QUrl(file)), QQmlComponent::Asynchronous);
        connect(component.get(), &QQmlComponent::statusChanged, this, &Preloader::check);
        m_components.push_back(std::move(component));
    }
    check(); // what another component holds is there at once
    // A font is looked for when it is first measured.
    const ThemeFont fonts;
    for (const QFont &font : {fonts.title, fonts.caption, fonts.mono}) {
        QFontMetricsF(font).horizontalAdvance(QStringLiteral("0"));
    }
}

void Preloader::check()
{
    const bool ready =
        std::ranges::all_of(m_components, [](const auto &each) { return each->isReady(); });
    if (ready && !m_ready) {
        m_ready = true;
        Q_EMIT readyChanged();
    }
}

} // namespace quillmark
