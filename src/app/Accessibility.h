// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

namespace quillmark {

/// Describes the window's controls, texts and text fields to assistive technology in full. Qt
/// Quick itself describes neither that one is disabled or scrolled out of sight, nor how to
/// change a field's text, and takes every text for something that the keyboard comes to.
///
/// To be called once, before a window is made. Items still need Accessible.role, which is
/// what puts them into the tree.
void installAccessibility();

} // namespace quillmark
