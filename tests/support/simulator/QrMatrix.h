// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillmark::test {

enum class QrLevel { L, M, Q, H }; ///< share of codewords that may be wrong: 7, 15, 25, 30 %

/// The modules of a QR code without quiet zone.
struct QrMatrix {
    int size = 0;                    ///< modules along one side
    std::vector<std::uint8_t> cells; ///< 1 is dark, by rows
    /// 1 where the module is the same in all codes of the size: finder patterns with their
    /// separators, timing and alignment patterns.
    std::vector<std::uint8_t> fixed;

    std::uint8_t &cellAt(int column, int row) { return cells[index(column, row)]; }
    bool isDark(int column, int row) const { return cells[index(column, row)] != 0; }
    bool isFixed(int column, int row) const { return fixed[index(column, row)] != 0; }

private:
    std::size_t index(int column, int row) const
    {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(size) +
               static_cast<std::size_t>(column);
    }
};

/// Encodes bytes as one byte segment without a declared character set, in the smallest
/// version from the one given on that holds them.
/// Throws std::runtime_error where no version does.
QrMatrix encodeQr(const QByteArray &bytes, QrLevel level = QrLevel::M, int fromVersion = 1);

/// How a segment of a code is written.
enum class QrMode { numeric, alphanumeric, bytes, kanji };

/// One run of a code's content. Kanji content is in Shift JIS.
struct QrSegment {
    QrMode mode = QrMode::bytes;
    QByteArray content;
    int eci = -1; ///< a declared character set (26 is UTF-8), or -1
};

/// Encodes segments as they stand. Throws std::runtime_error where they do not fit or
/// hold what their mode cannot.
QrMatrix encodeQrSegments(const std::vector<QrSegment> &segments, QrLevel level = QrLevel::M);

} // namespace quillmark::test
