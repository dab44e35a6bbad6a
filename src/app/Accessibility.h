// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

namespace quillmark {

/// Describes the window's controls and text fields to assistive technology in full. Qt Quick
/// itself describes neither that one is disabled nor how to change a field's text.
///
/// To be called once, before a window is made. Items still need Accessible.role, which is
/// what puts them into the tree.
void installAccessibility();

} // namespace quillmark
