// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QCoro/QCoroTask>
#include <QImage>
#include <QQuickPaintedItem>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <filesystem>

namespace quillmark {

/// Shows a picture from a file as large as fits, with its proportions kept. It is read in the
/// background; what is no picture leaves the item empty.
class ReferencePhoto : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QUrl source READ source WRITE setSource NOTIFY sourceChanged)
    Q_PROPERTY(bool empty READ isEmpty NOTIFY pictureChanged)

public:
    explicit ReferencePhoto(QQuickItem *parent = nullptr);

    QUrl source() const { return m_source; }
    void setSource(const QUrl &source);

    /// There is no picture to show, nor one being read.
    bool isEmpty() const { return !m_loading && m_picture.isNull(); }
    const QImage &picture() const { return m_picture; }

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void sourceChanged();
    void pictureChanged();

private:
    QCoro::Task<> load(std::filesystem::path file);
    void setPicture(const QImage &picture);

    QUrl m_source;
    QImage m_picture;
    bool m_loading = false;
};

} // namespace quillmark
