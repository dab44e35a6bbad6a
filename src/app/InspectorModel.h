// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "payload/SlatePayload.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace quillmark {

/// The labelled lines of a payload, for a view: roles "label" and "value".
class InspectorModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ANONYMOUS

public:
    enum Role { LabelRole = Qt::UserRole, ValueRole };

    using QAbstractListModel::QAbstractListModel;

    void setRows(std::vector<InspectorRow> rows);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    std::vector<InspectorRow> m_rows;
};

} // namespace quillmark
