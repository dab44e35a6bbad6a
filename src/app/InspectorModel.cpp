// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/InspectorModel.h"

#include <utility>

namespace quillmark {

void InspectorModel::setRows(std::vector<InspectorRow> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

int InspectorModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant InspectorModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const InspectorRow &row = m_rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case LabelRole:
        return row.label;
    case ValueRole:
        return row.value;
    default:
        return {};
    }
}

QHash<int, QByteArray> InspectorModel::roleNames() const
{
    return {{LabelRole, QByteArrayLiteral("label")}, {ValueRole, QByteArrayLiteral("value")}};
}

} // namespace quillmark
