// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "payload/SlatePayload.h"

namespace quillmark::test {

/// A payload with its seven required fields only.
SlatePayload minimalPayload();

/// A payload with all nineteen fields, texts beyond ASCII among them.
SlatePayload fullPayload();

} // namespace quillmark::test
