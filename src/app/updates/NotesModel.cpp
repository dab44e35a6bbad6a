// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/NotesModel.h"

#include <utility>

namespace quillmark {
namespace {

QString kindName(NoteLine::Kind kind)
{
    switch (kind) {
    case NoteLine::Kind::Paragraph:
        return QStringLiteral("Paragraph");
    case NoteLine::Kind::Heading:
        return QStringLiteral("Heading");
    case NoteLine::Kind::Item:
        return QStringLiteral("Item");
    case NoteLine::Kind::Code:
        return QStringLiteral("Code");
    case NoteLine::Kind::Link:
        return QStringLiteral("Link");
    }
    return {};
}

} // namespace

void NotesModel::setLines(std::vector<NoteLine> lines)
{
    beginResetModel();
    m_lines = std::move(lines);
    endResetModel();
}

int NotesModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_lines.size());
}

QVariant NotesModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const NoteLine &line = m_lines[static_cast<std::size_t>(index.row())];
    switch (role) {
    case KindRole:
        return kindName(line.kind);
    case TextRole:
        return line.text;
    case AddressRole:
        return line.address;
    case MarkRole:
        return line.mark;
    default:
        return {};
    }
}

QHash<int, QByteArray> NotesModel::roleNames() const
{
    return {{KindRole, QByteArrayLiteral("kind")},
            {TextRole, QByteArrayLiteral("text")},
            {AddressRole, QByteArrayLiteral("address")},
            {MarkRole, QByteArrayLiteral("mark")}};
}

} // namespace quillmark
