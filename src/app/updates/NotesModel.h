// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/updates/ReleaseNotes.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace quillmark {

/// Release notes for a view: roles "kind" (the name of a NoteLine::Kind), "text", "address"
/// and "mark".
class NotesModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ANONYMOUS

public:
    enum Role { KindRole = Qt::UserRole, TextRole, AddressRole, MarkRole };

    using QAbstractListModel::QAbstractListModel;

    void setLines(std::vector<NoteLine> lines);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    std::vector<NoteLine> m_lines;
};

} // namespace quillmark
