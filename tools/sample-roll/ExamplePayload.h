// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

namespace quillmark::tools {

/// The payload of an example slate with all nineteen fields, as JSON in UTF-8.
QByteArray examplePayloadJson();

} // namespace quillmark::tools
