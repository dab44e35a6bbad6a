// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/QrReader.h"

#include "detection/FinderScan.h"
#include "detection/FinderTriangle.h"
#include "detection/FrameCopy.h"
#include "detection/LumaView.h"
#include "detection/QrRegion.h"
#include "detection/Reduce.h"
#include "detection/Sharpen.h"
#include "detection/SymbolList.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <exception>
#include <utility>
#include <vector>

namespace quillmark {
namespace {

constexpr std::size_t smallFrame = 3'000'000; // pixels
constexpr std::size_t tinyFrame = 250'000;
constexpr std::size_t mostTriangles = 6;
constexpr int scanReduction = 3; // from one size at which finders are looked for to the next
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
        if (lookAtReducedFinders() || lookAtFinders(m_frame, 1) || lookAtWholeFrame()) {
            return;
        }
        if (pixelCount(m_frame) <= tinyFrame) {
            lookAtEnlarged();
        }
    }

    const SymbolList &symbols() const { return m_symbols; }

private:
    bool isOver() const { return m_symbols.hasObjectText(); }

    bool add(std::vector<QrSymbol> symbols)
    {
        for (QrSymbol &symbol : symbols) {
            m_symbols.add(std::move(symbol));
        }
        return isOver();
    }

    /// Reads where finder patterns stand in a triangle on a copy of the frame.
    bool lookAtFinders(const LumaView &copy, int scale)
    {
        const int rowStep = scale == 1 && pixelCount(copy) > smallFrame ? 4 : 2;
        const std::vector<FinderMark> marks = scanForFinders(copy, rowStep);
        for (FinderTriangle triangle : findTriangles(marks, mostTriangles)) {
            for (FinderMark *mark : {&triangle.corner, &triangle.first, &triangle.second}) {
                mark->x *= scale;
                mark->y *= scale;
                mark->module *= scale;
            }
            triangle.module *= scale;
            add(readRegion(m_frame, triangle));
        }
        return isOver();
    }

    /// The same on copies in which larger modules have a size that the scan sees, smallest
    /// copy first: it costs next to nothing.
    bool lookAtReducedFinders()
    {
        std::vector<std::pair<LumaImage, int>> copies;
        int scale = scanReduction;
        LumaView last = m_frame;
        while (std::min(last.width, last.height) >= scanReduction * leastScannedSide) {
            copies.emplace_back(reduceByBox(last, scanReduction), scale);
            last = copies.back().first;
            scale *= scanReduction;
        }
        while (!copies.empty()) {
            if (lookAtFinders(copies.back().first, copies.back().second)) {
                return true;
            }
            copies.pop_back();
        }
        return false;
    }

    /// The library's own search on sharpened copies of the whole frame, as large as their
    /// cost allows: it finds codes whose finder patterns are damaged.
    bool lookAtWholeFrame()
    {
        constexpr std::array reductions{1, 2, 3, 4, 6, 8, 12, 16};
        constexpr std::size_t mostLooks = 2;
        std::size_t looks = 0;
        for (const int factor : reductions) {
            const auto area = static_cast<std::size_t>(factor) * static_cast<std::size_t>(factor);
            if (looks == mostLooks || pixelCount(m_frame) / area > smallFrame) {
                continue;
            }
            ++looks;
            FrameCopy copy{reduceByBox(m_frame, factor), 1.0 * factor};
            sharpen(copy.image, lookSharpening);
            if (add(readCopy(std::move(copy), Polarity::both, QrEffort::thorough))) {
                return true;
            }
        }
        return false;
    }

    /// Modules of one or two pixels in a small picture.
    void lookAtEnlarged()
    {
        for (const int factor : {2, 4}) {
            FrameCopy copy{enlarge(m_frame, factor), 1.0 / factor};
            if (add(readCopy(std::move(copy), Polarity::both, QrEffort::thorough))) {
                return;
            }
        }
    }

    LumaView m_frame;
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
