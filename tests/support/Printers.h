// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

// How values read in the messages of failing tests. The functions are found by
// argument-dependent look-up, so each stands in the namespace of its type.

#include "payload/SlatePayload.h"

#include <QString>

#include <ostream>

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace quillmark {

inline void PrintTo(const InspectorRow &row, std::ostream *out)
{
    *out << row.label.toStdString() << " = " << row.value.toStdString();
}

} // namespace quillmark
