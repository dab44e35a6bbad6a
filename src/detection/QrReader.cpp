// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/QrReader.h"

#include "detection/CodeTexture.h"
#include "detection/FinderScan.h"
#include "detection/FinderTriangle.h"
#include "detection/FrameCopy.h"
#include "detection/LumaView.h"
#include "detection/QrRegion.h"
#include "detection/Reduce.h"
#include "detection/Sharpen.h"
#include "detection/SymbolList.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <utility>
#include <vector>

namespace quillmark {
namespace {

constexpr std::size_t smallPicture = 3'000'000; // pixels
constexpr std::size_t tinyPicture = 250'000;
constexpr std::size_t mostTriangles = 6;
constexpr int scanReduction = 3; // from one copy to the next
constexpr int leastScannedSide = 60;
constexpr int lookSharpening = 4; // quarters

std::size_t pixelCount(const LumaView &picture)
{
    return static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
}

/// The looks at one frame, cheapest and most fruitful first. Each adds what it sees.
class FrameSearch
{
public:
    explicit FrameSearch(const LumaView &frame) : m_frame(frame) {}

    /// Goes on until a look reads what can be a slate, or there is nothing left to try. A
    /// text of another kind does not end the search: the slate may stand beside it.
    void run()
    {
        makeCopies();
        // Smallest first: it costs next to nothing.
        for (std::size_t i = m_copies.size(); i-- > 0 && !isOver();) {
            lookAtFinders(m_copies[i].first, m_copies[i].second);
        }
        if (!isOver()) {
            lookAtFinders(m_frame, 1);
        }
        if (!isOver()) {
            lookAtWhole();
        }
    }

    const SymbolList &symbols() const { return m_symbols; }

private:
    bool isOver() const { return m_symbols.hasObjectText(); }

    void add(std::vector<QrSymbol> symbols)
    {
        for (QrSymbol &symbol : symbols) {
            m_symbols.add(std::move(symbol));
        }
    }

    /// Copies in which larger modules have a size that the scan for finders sees.
    void makeCopies()
    {
        int scale = scanReduction;
        LumaView last = m_frame;
        while (std::min(last.width, last.height) >= scanReduction * leastScannedSide) {
            m_copies.emplace_back(reduceByBox(last, scanReduction), scale);
            last = m_copies.back().first;
            scale *= scanReduction;
        }
    }

    /// Reads where finder patterns stand in a triangle on a copy of the frame.
    void lookAtFinders(const LumaView &copy, int scale)
    {
        const int rowStep = pixelCount(copy) > smallPicture ? 4 : 2;
        const std::vector<FinderMark> marks = scanForFinders(copy, rowStep);
        for (FinderTriangle triangle : findTriangles(marks, mostTriangles)) {
            triangle.transform(0, 0, scale);
            if (hasCodeTexture(m_frame, triangle)) {
                add(readRegion(m_frame, triangle));
            }
        }
    }

    /// The library's own search over the whole frame: it finds codes whose finder patterns
    /// are damaged, and what is too small for ours. Large frames are seen reduced only.
    void lookAtWhole()
    {
        if (pixelCount(m_frame) <= smallPicture) {
            lookAtWhole({reduceByBox(m_frame, 1), 1});
        }
        for (auto &[copy, scale] : m_copies) {
            if (pixelCount(copy) <= smallPicture && !isOver()) {
                lookAtWhole({reduceByBox(copy, 2), 2.0 * scale});
                lookAtWhole({std::move(copy), 1.0 * scale});
                break;
            }
        }
        for (const int factor : {2, 4}) {
            if (pixelCount(m_frame) <= tinyPicture && !isOver()) {
                lookAtWhole({enlarge(m_frame, factor), 1.0 / factor});
            }
        }
    }

    void lookAtWhole(FrameCopy copy)
    {
        sharpen(copy.image, lookSharpening);
        add(readCopy(std::move(copy), Polarity::both, QrEffort::thorough));
    }

    LumaView m_frame;
    std::vector<std::pair<LumaImage, int>> m_copies; ///< and how much smaller they are
    SymbolList m_symbols;
};

} // namespace

// A code is the same code whichever way the frame lies, and the decoder reads it turned and
// mirrored: the orientation changes nothing.
std::vector<std::optional<QString>> readQrCodes(const LumaImage &luma,
                                                [[maybe_unused]] std::uint32_t orientation)
{
    const LumaView frame(luma);
    if (frame.isEmpty()) {
        return {};
    }
    FrameSearch search(frame);
    try {
        search.run();
    } catch (const std::exception &) {
        // Out of memory: what was found until here is what was found.
    }
    return search.symbols().texts();
}

} // namespace quillmark
