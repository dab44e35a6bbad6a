// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/ReferencePhoto.h"

#include "app/FileUrl.h"
#include "app/PictureReader.h"
#include "base/Background.h"

#include <QPainter>
#include <QPointer>

namespace quillmark {
namespace {

/// Enough for the pane's width on a screen of three times the usual density.
constexpr int maxSide = 1080;

} // namespace

ReferencePhoto::ReferencePhoto(QQuickItem *parent) : QQuickPaintedItem(parent) {}

void ReferencePhoto::setSource(const QUrl &source)
{
    if (m_source == source) {
        return;
    }
    m_source = source;
    Q_EMIT sourceChanged();
    if (const auto file = pathFromFileUrl(source)) {
        load(*file);
    } else {
        m_loading = false;
        setPicture({});
    }
}

QCoro::Task<> ReferencePhoto::load(std::filesystem::path file)
{
    const QPointer<ReferencePhoto> alive(this);
    const QUrl loaded = m_source;
    m_loading = true;
    setPicture({});
    QImage picture;
    try {
        picture = co_await runInBackground(&readPicture, std::move(file), maxSide);
    } catch (...) { // NOLINT(bugprone-empty-catch)
        // A picture that cannot be read, for whatever reason, is none.
    }
    // Meanwhile the item may have gone, or been given another file.
    if (alive && m_source == loaded) {
        m_loading = false;
        setPicture(picture);
    }
}

void ReferencePhoto::setPicture(const QImage &picture)
{
    m_picture = picture;
    update();
    Q_EMIT pictureChanged();
}

void ReferencePhoto::paint(QPainter *painter)
{
    if (m_picture.isNull()) {
        return;
    }
    const QSizeF size = QSizeF(m_picture.size()).scaled(boundingRect().size(), Qt::KeepAspectRatio);
    QRectF place(QPointF(), size);
    place.moveCenter(boundingRect().center());
    // Scaled by area: a painter's own scaling skips pixels where it makes pictures smaller.
    const QSize pixels = (size * painter->device()->devicePixelRatioF()).toSize();
    painter->drawImage(place,
                       m_picture.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

} // namespace quillmark
