// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/Oracle.h"

#include "detection/QrDecode.h"
#include "support/simulator/Equalizer.h"
#include "support/simulator/ModuleGrid.h"
#include "support/simulator/PlainCode.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace quillmark::test {
namespace {

constexpr int drawnModule = 4; // pixels: what the decoder reads best
constexpr std::array sampleWidths{0.7, 0.0};
constexpr std::array sharpenings{0.0F, 0.4F, 0.8F, 1.6F};
constexpr std::array localWindows{2, 4, 9}; // modules to each side

constexpr int mostImprovements = 6;

class Attempts
{
public:
    Attempts(const QrMatrix &code, const QByteArray &content) : m_code(code), m_content(content) {}

    /// The bits of the grid, cut at the thresholds.
    QrMatrix cut(const ModuleGrid &grid, const ModuleGrid &thresholds) const
    {
        QrMatrix bits = m_code;
        for (int row = 0; row < bits.size; ++row) {
            for (int column = 0; column < bits.size; ++column) {
                if (!bits.isFixed(column, row)) {
                    bits.cellAt(column, row) =
                        grid.at(column, row) < thresholds.at(column, row) ? 1 : 0;
                }
            }
        }
        return bits;
    }

    /// Whether these bits are the code. Those that were tried before are not.
    bool read(const QrMatrix &bits)
    {
        if (std::ranges::find(m_tried, bits.cells) != m_tried.end()) {
            return false;
        }
        m_tried.push_back(bits.cells);
        const auto symbols = decodeQrSymbols(drawCode(bits, drawnModule), QrEffort::quick);
        return std::ranges::any_of(symbols, [this](const QrSymbol &symbol) {
            return symbol.text && symbol.text->toUtf8() == m_content;
        });
    }

    bool readCut(const ModuleGrid &sampled)
    {
        for (const float strength : sharpenings) {
            const ModuleGrid grid = sampled.sharpened(strength);
            for (const int window : localWindows) {
                if (read(cut(grid, grid.localMeans(window)))) {
                    return true;
                }
            }
            if (read(cut(grid, grid.otsuThreshold()))) {
                return true;
            }
        }
        return false;
    }

    bool readEqualized(const ModuleGrid &sampled)
    {
        const Equalizer equalizer(sampled);
        const ModuleGrid grid = sampled.sharpened(sharpenings.back() / 2);
        QrMatrix bits = cut(grid, grid.localMeans(localWindows[1]));
        for (int i = 0; i < mostImprovements; ++i) {
            QrMatrix better = equalizer.improve(bits);
            if (better.cells == bits.cells) {
                break;
            }
            bits = std::move(better);
            if (read(bits)) {
                return true;
            }
        }
        return false;
    }

private:
    const QrMatrix &m_code;
    const QByteArray &m_content;
    std::vector<std::vector<std::uint8_t>> m_tried;
};

} // namespace

OracleAnswer askOracle(const LumaImage &picture, const QrMatrix &code, const CardGeometry &geometry,
                       bool lightOnDark, const QByteArray &content)
{
    Attempts attempts(code, content);
    std::vector<ModuleGrid> grids;
    for (const double width : sampleWidths) {
        grids.push_back(sampleModules(picture, geometry, code.size, width));
        if (lightOnDark) {
            grids.back().invert();
        }
    }
    const auto readCut = [&](const ModuleGrid &grid) { return attempts.readCut(grid); };
    const auto readEqualized = [&](const ModuleGrid &grid) { return attempts.readEqualized(grid); };
    const bool reads = std::ranges::any_of(grids, readCut);
    return {reads, reads || std::ranges::any_of(grids, readEqualized)};
}

} // namespace quillmark::test
