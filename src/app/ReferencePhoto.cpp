// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/ReferencePhoto.h"

#include "app/FileUrl.h"
#include "app/PictureReader.h"
#include "base/Background.h"

#include <QQuickWindow>
#include <QSGImageNode>
#include <QTimerEvent>

#include <algorithm>
#include <chrono>
#include <memory>

namespace quillmark {
namespace {

/// A change of size that goes on is waited for.
constexpr std::chrono::milliseconds settleTime{200};

/// How much larger than its pixels a picture is shown before one would notice, and how much
/// smaller before pixels that are passed over show.
constexpr double enlargement = 1.02;
constexpr double reduction = 0.5;

} // namespace

ReferencePhoto::ReferencePhoto(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
}

ReferencePhoto::~ReferencePhoto()
{
    m_stop.request_stop();
}

void ReferencePhoto::setSource(const QUrl &source)
{
    if (m_source == source) {
        return;
    }
    m_source = source;
    m_stop.request_stop();
    m_stop = std::stop_source();
    m_file = pathFromFileUrl(source);
    m_awaited = m_file.has_value();
    m_reading = false;
    m_sizeTimer.stop();
    take({}, {});
    Q_EMIT sourceChanged();
    polish();
}

/// The size of the item in the pixels of its screen.
QSize ReferencePhoto::pixelSize() const
{
    return window() ? (size() * window()->effectiveDevicePixelRatio()).toSize() : QSize();
}

void ReferencePhoto::geometryChange(const QRectF &now, const QRectF &before)
{
    QQuickItem::geometryChange(now, before);
    if (now.size() != before.size()) {
        checkSize();
    }
}

void ReferencePhoto::itemChange(ItemChange change, const ItemChangeData &data)
{
    QQuickItem::itemChange(change, data);
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged) {
        checkSize();
    }
}

/// Has the picture shown in its new place, and read where there is none; a better one can wait.
void ReferencePhoto::checkSize()
{
    update();
    if (m_awaited) {
        polish();
    } else if (hasUnfitSize()) {
        m_sizeTimer.start(static_cast<int>(settleTime.count()), this);
    }
}

void ReferencePhoto::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_sizeTimer.timerId()) {
        QQuickItem::timerEvent(event);
        return;
    }
    m_sizeTimer.stop();
    polish();
}

/// Whether the picture has too few or far too many pixels for where it is shown.
bool ReferencePhoto::hasUnfitSize() const
{
    const QSize box = pixelSize();
    if (m_picture.isNull() || box.isEmpty()) {
        return false;
    }
    const double scale = std::min(static_cast<double>(box.width()) / m_picture.width(),
                                  static_cast<double>(box.height()) / m_picture.height());
    return (scale > enlargement && !m_whole) || scale < reduction;
}

/// Only here, just before the window is drawn, has the item the size that its layout gives it.
void ReferencePhoto::updatePolish()
{
    const QSize box = pixelSize();
    const bool wanted = m_awaited || (hasUnfitSize() && !m_sizeTimer.isActive());
    if (m_file && wanted && !m_reading && !box.isEmpty()) {
        read(*m_file, box);
    }
}

QCoro::Task<> ReferencePhoto::read(std::filesystem::path file, QSize largest)
{
    const std::stop_token stop = m_stop.get_token();
    m_reading = true;
    QImage picture;
    try {
        picture = co_await runInBackground(&readPicture, std::move(file), largest, stop);
    } catch (...) { // NOLINT(bugprone-empty-catch)
        // A picture that cannot be read, for whatever reason, is none.
    }
    // Meanwhile the item may have gone, or been given another file.
    if (stop.stop_requested()) {
        co_return;
    }
    m_reading = false;
    m_awaited = false;
    if (picture.isNull() && !m_picture.isNull()) {
        m_whole = true; // the file is gone: what was read of it is all there is
        co_return;
    }
    take(picture, largest);
    checkSize();
}

/// `largest` is the size that the picture was to fit.
void ReferencePhoto::take(const QImage &picture, QSize largest)
{
    m_picture = picture;
    m_whole = picture.width() < largest.width() && picture.height() < largest.height();
    m_repaint = true;
    update();
    Q_EMIT pictureChanged();
}

/// Where the picture is shown: on whole pixels of the screen. The software renderer rounds by
/// itself; any other would blur it.
QRectF ReferencePhoto::place() const
{
    const double ratio = window()->effectiveDevicePixelRatio();
    const QSize pixels =
        m_picture.size().scaled(pixelSize(), Qt::KeepAspectRatio).expandedTo({1, 1});
    QRectF place(QPointF(), QSizeF(pixels) / ratio);
    place.moveCenter(boundingRect().center());
    const QPointF inScene = mapToScene(place.topLeft()) * ratio;
    place.moveTopLeft(mapFromScene(QPointF(inScene.toPoint()) / ratio));
    return place;
}

QSGNode *ReferencePhoto::updatePaintNode(QSGNode *old, UpdatePaintNodeData * /*data*/)
{
    std::unique_ptr<QSGImageNode> node(static_cast<QSGImageNode *>(old));
    if (m_repaint) {
        m_repaint = false;
        node.reset();
    }
    if (m_picture.isNull() || pixelSize().isEmpty()) {
        return nullptr;
    }
    if (!node) {
        node.reset(window()->createImageNode());
        node->setOwnsTexture(true);
        node->setTexture(window()->createTextureFromImage(m_picture));
        node->setFiltering(QSGTexture::Linear);
    }
    node->setRect(place());
    return node.release();
}

} // namespace quillmark
