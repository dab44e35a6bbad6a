// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/simulator/Random.h"

#include <QByteArray>

namespace quillmark::test {

/// What a slate's code holds: a payload that the program accepts, about 170 to 700 bytes.
QByteArray randomSlateText(Random &random);

/// What other codes hold: addresses, network settings, cards, numbers and plain texts, 4 to
/// about 160 bytes of UTF-8.
QByteArray randomOtherText(Random &random);

} // namespace quillmark::test
