// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "payload/SlatePayload.h"

#include <optional>

namespace quillmark {

/// Remembers the payload that was typed last, across launches, in the user's settings.
/// Failures are silent: what cannot be saved is not saved, and what cannot be read is absent.
namespace LastUsedPayloadStore {

/// Replaces the stored payload. Main thread.
void save(const SlatePayload &payload);

/// The stored payload, of whatever version, or nothing. Main thread.
std::optional<SlatePayload> load();

} // namespace LastUsedPayloadStore
} // namespace quillmark
