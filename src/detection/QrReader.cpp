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
constexpr int copySharpening = 8; // quarters

std::size_t pixelCount(const LumaView &picture)
{
    return static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
}

/// The looks at one frame, cheapest and most fruitful first. Each adds what it sees.
class FrameSearch
{
public:
    explicit FrameSearch(const LumaView &frame) : m_frame(frame) {}

    /// Goes on until a look reads a slate, or there is nothing left to try. Another text
    /// does not end the search, however much it looks like one: the slate may stand beside it.
    void run()
    {
        makeCopies();
        lookAtCopies([this](const Copy &copy) { lookAtFinders(copy.image, copy.scale); });
        if (!isOver()) {
            lookAtFinders(m_frame, 1);
        }
        if (!isOver()) {
            sharpenCopies();
        }
        lookAtCopies([this](const Copy &copy) { lookAtFinders(copy.image, copy.scale); });
        lookAtCopies([this](const Copy &copy) { lookAtWhole(copy); });
        if (!isOver() && pixelCount(m_frame) <= tinyPicture) {
            lookAtEnlarged();
        }
    }

    const SymbolList &symbols() const { return m_symbols; }

private:
    /// The frame at 1/scale of its size.
    struct Copy {
        LumaImage image;
        int scale;
    };

    bool isOver() const { return m_symbols.hasSlate(); }

    void add(std::vector<QrSymbol> symbols)
    {
        for (QrSymbol &symbol : symbols) {
            m_symbols.add(std::move(symbol));
        }
    }

    /// In copies, larger modules have a size that the scan for finders sees.
    void makeCopies()
    {
        int scale = scanReduction;
        LumaView last = m_frame;
        while (std::min(last.width, last.height) >= scanReduction * leastScannedSide) {
            m_copies.push_back({reduceByBox(last, scanReduction), scale});
            last = m_copies.back().image;
            scale *= scanReduction;
        }
    }

    /// Sharpening makes the patterns of soft codes stand out, and is for what is left over:
    /// of the frame itself only where it is small.
    void sharpenCopies()
    {
        std::erase_if(m_copies,
                      [](const Copy &copy) { return pixelCount(copy.image) > smallPicture; });
        if (pixelCount(m_frame) <= smallPicture) {
            m_copies.insert(m_copies.begin(), {reduceByBox(m_frame, 1), 1});
        }
        for (Copy &copy : m_copies) {
            sharpen(copy.image, copySharpening);
        }
    }

    /// Smallest copy first: it costs next to nothing.
    template <typename Look>
    void lookAtCopies(const Look &look)
    {
        for (auto copy = m_copies.rbegin(); copy != m_copies.rend() && !isOver(); ++copy) {
            look(*copy);
        }
    }

    /// Reads where finder patterns stand in a triangle on a copy of the frame.
    void lookAtFinders(const LumaView &copy, int scale)
    {
        const int rowStep = pixelCount(copy) > smallPicture ? 4 : 2;
        const std::vector<FinderMark> marks = scanForFinders(copy, rowStep);
        for (FinderTriangle triangle : findTriangles(marks, mostTriangles)) {
            triangle.transform(0, 0, scale);
            if (!m_symbols.hasTextAt(triangle.middle()) && hasCodeTexture(m_frame, triangle)) {
                add(readRegion(m_frame, triangle));
            }
        }
    }

    /// The library's own search over the whole frame: it finds codes whose finder patterns
    /// are damaged.
    void lookAtWhole(const Copy &copy)
    {
        const QrEffort effort = copy.scale == 1 ? QrEffort::thorough : QrEffort::quick;
        add(readCopy({copy.image, 1.0 * copy.scale}, Polarity::both, effort));
    }

    /// Modules of one or two pixels in a small picture.
    void lookAtEnlarged()
    {
        for (const int factor : {2, 4}) {
            add(readCopy({enlarge(m_frame, factor), 1.0 / factor}, Polarity::both,
                         QrEffort::thorough));
        }
    }

    LumaView m_frame;
    std::vector<Copy> m_copies;
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
