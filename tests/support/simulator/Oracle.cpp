// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "support/simulator/Oracle.h"

#include "detection/QrDecode.h"
#include "support/simulator/ModuleGrid.h"
#include "support/simulator/PlainCode.h"

#include <algorithm>
#include <array>
#include <vector>

namespace quillmark::test {
namespace {

constexpr int drawnModule = 4; // pixels: what the decoder reads best
constexpr std::array sampleWidths{0.7, 0.0};
constexpr std::array sharpenings{0.0F, 0.4F, 0.8F, 1.6F};
constexpr std::array localWindows{2, 4, 9}; // modules to each side

class Attempts
{
public:
    Attempts(const QrMatrix &code, const QByteArray &content) : m_code(code), m_content(content) {}

    /// Whether the grid, cut at the thresholds, is the code.
    bool read(const ModuleGrid &grid, const ModuleGrid &thresholds)
    {
        QrMatrix cut = m_code;
        for (int row = 0; row < cut.size; ++row) {
            for (int column = 0; column < cut.size; ++column) {
                if (!cut.isFixed(column, row)) {
                    cut.cellAt(column, row) =
                        grid.at(column, row) < thresholds.at(column, row) ? 1 : 0;
                }
            }
        }
        if (std::ranges::find(m_tried, cut.cells) != m_tried.end()) {
            return false;
        }
        m_tried.push_back(cut.cells);
        const auto symbols = decodeQrSymbols(drawCode(cut, drawnModule), QrEffort::quick);
        return std::ranges::any_of(symbols, [this](const QrSymbol &symbol) {
            return symbol.text && symbol.text->toUtf8() == m_content;
        });
    }

private:
    const QrMatrix &m_code;
    const QByteArray &m_content;
    std::vector<std::vector<std::uint8_t>> m_tried;
};

} // namespace

bool oracleReads(const LumaImage &picture, const QrMatrix &code, const CardGeometry &geometry,
                 bool lightOnDark, const QByteArray &content)
{
    Attempts attempts(code, content);
    for (const double width : sampleWidths) {
        ModuleGrid sampled = sampleModules(picture, geometry, code.size, width);
        if (lightOnDark) {
            sampled.invert();
        }
        for (const float strength : sharpenings) {
            const ModuleGrid grid = sampled.sharpened(strength);
            for (const int window : localWindows) {
                if (attempts.read(grid, grid.localMeans(window))) {
                    return true;
                }
            }
            if (attempts.read(grid, grid.otsuThreshold())) {
                return true;
            }
        }
    }
    return false;
}

} // namespace quillmark::test
