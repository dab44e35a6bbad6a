// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

namespace quillmark::test {

/// A place in a picture in pixels, (0, 0) being the top left corner of the top left pixel;
/// or on a card in modules, (0, 0) being the code's own top left corner.
struct Point {
    double x = 0;
    double y = 0;
};

} // namespace quillmark::test
