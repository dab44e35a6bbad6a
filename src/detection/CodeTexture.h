// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/FinderTriangle.h"
#include "detection/LumaView.h"

namespace quillmark {

/// Whether what lies between three finder marks changes between light and dark as often as
/// a code does: about every second module differs from its neighbour, and blur takes some
/// of that away. Between marks that have nothing to do with each other there is too little
/// or too much of it. Triangle in pixels of the picture. Any thread.
bool hasCodeTexture(const LumaView &picture, const FinderTriangle &triangle);

} // namespace quillmark
