// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QBasicTimer>
#include <QCoro/QCoroTask>
#include <QImage>
#include <QQuickItem>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <filesystem>
#include <optional>
#include <stop_token>

namespace quillmark {

/// Shows a picture from a file as large as fits, with its proportions kept. It is read in the
/// background, at the size in which it is shown and in the pixels of the screen; what is no
/// picture leaves the item empty. When the item has become larger and stays so for a moment,
/// the picture is read again, and the one at hand shown until then.
class ReferencePhoto : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QUrl source READ source WRITE setSource NOTIFY sourceChanged)
    Q_PROPERTY(bool empty READ isEmpty NOTIFY pictureChanged)

public:
    explicit ReferencePhoto(QQuickItem *parent = nullptr);
    ~ReferencePhoto() override;

    QUrl source() const { return m_source; }
    void setSource(const QUrl &source);

    /// There is no picture to show, nor one being read. One that waits for the item to get a
    /// size and a window counts as being read.
    bool isEmpty() const { return !m_awaited && m_picture.isNull(); }

    /// What is shown, in the pixels of the screen; null before there is something.
    const QImage &picture() const { return m_picture; }

Q_SIGNALS:
    void sourceChanged();
    void pictureChanged();

protected:
    void geometryChange(const QRectF &now, const QRectF &before) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void timerEvent(QTimerEvent *event) override;
    void updatePolish() override;
    QSGNode *updatePaintNode(QSGNode *old, UpdatePaintNodeData *data) override;

private:
    QSize pixelSize() const;
    QRectF place() const;
    bool hasUnfitSize() const;
    void checkSize();
    QCoro::Task<> read(std::filesystem::path file, QSize largest);
    void take(const QImage &picture, QSize largest);

    QUrl m_source;
    std::optional<std::filesystem::path> m_file;
    QImage m_picture;
    bool m_awaited = false;  ///< the source's first picture has yet to come
    bool m_reading = false;  ///< the source, be it for the first time or again
    bool m_whole = false;    ///< the file has no more pixels than m_picture
    bool m_repaint = false;  ///< m_picture is not yet in the scene
    std::stop_source m_stop; ///< of the source; another one for the next
    QBasicTimer m_sizeTimer; ///< runs for a moment after a change of size
};

} // namespace quillmark
