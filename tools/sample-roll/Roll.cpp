// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "Roll.h"

#include "support/ImageFiles.h"
#include "support/simulator/Random.h"
#include "support/simulator/SlateFrame.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <exception>
#include <map>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace quillmark::tools {
namespace {

test::Clutter clutterOf(std::uint64_t frameSeed)
{
    // Every third frame has buildings; tiles and print are for tests.
    return frameSeed % 3 == 0 ? test::Clutter::buildings : test::Clutter::none;
}

test::SimulatedCard layCard(const RollOptions &options, const test::QrMatrix &code)
{
    const int shortSide = std::min(options.width, options.height);
    test::SimulatedCard card;
    card.code = code;
    card.pose.modulePixels = options.modulePixels.value_or(0.45 * shortSide / code.size);
    card.pose.centreX = options.centreX.value_or(0.5) * options.width;
    card.pose.centreY = options.centreY.value_or(0.46) * options.height;
    card.pose.tilt = options.tilt;
    card.pose.perspective = options.perspective;
    card.pose.leanTowards = static_cast<double>(test::hash64(options.seed) % 360);
    card.pose.mirrored = options.mirrored;
    card.blur = options.blur;
    return card;
}

test::SimulatedFrame planFrame(const RollOptions &options, int number)
{
    test::SimulatedFrame frame;
    frame.width = options.width;
    frame.height = options.height;
    frame.seed = test::hash64(options.seed * 1000 + static_cast<std::uint64_t>(number));
    frame.clutter = clutterOf(frame.seed);
    frame.film.contrast = options.contrast;
    frame.film.grain = options.grain;
    frame.film.dust = options.dust;
    frame.film.scratches = options.scratches;
    frame.film.negative = options.negative;
    frame.workers = options.frames < options.jobs ? options.jobs / options.frames : 1;
    return frame;
}

RollFormat formatOf(const RollOptions &options, int number)
{
    if (options.format != RollFormat::mixed) {
        return options.format;
    }
    constexpr std::array turns{RollFormat::jpeg, RollFormat::tiff8, RollFormat::tiff16};
    return turns[static_cast<std::size_t>(number - 1) % turns.size()];
}

std::filesystem::path nameOf(int number, int frames, RollFormat format)
{
    const std::string digits = std::to_string(number);
    const std::size_t places = std::max<std::size_t>(2, std::to_string(frames).size());
    return "frame-" + std::string(places - digits.size(), '0') + digits +
           (format == RollFormat::jpeg ? ".jpg" : ".tif");
}

std::string writeFrame(const RollOptions &options, const test::SimulatedFrame &frame, int number)
{
    const RollFormat format = formatOf(options, number);
    const std::filesystem::path file = options.folder / nameOf(number, options.frames, format);
    const test::RasterImage image = test::renderRaster(frame);
    std::string kind = "JPEG";
    if (format == RollFormat::jpeg) {
        test::JpegOptions jpeg;
        jpeg.quality = options.quality;
        test::writeJpeg(file, image, jpeg);
    } else {
        test::TiffOptions tiff;
        tiff.bits = format == RollFormat::tiff16 ? 16 : 8;
        test::writeTiff(file, image, tiff);
        kind = "TIFF " + std::to_string(tiff.bits) + " bit";
    }

    std::string line = file.string() + ": " + kind + ", " + std::to_string(frame.width) + " x " +
                       std::to_string(frame.height);
    for (const test::SimulatedCard &card : frame.cards) {
        const auto modules = static_cast<long>(card.pose.modulePixels * 10);
        line += ", slate of " + std::to_string(card.code.size) + " modules of " +
                std::to_string(modules / 10) + "." + std::to_string(modules % 10) + " pixels";
    }
    return line;
}

/// Hands lines on in the order of their numbers, whatever order they come in.
class OrderedReport
{
public:
    explicit OrderedReport(const std::function<void(const std::string &)> &report)
        : m_report(report)
    {}

    void add(int number, std::string line)
    {
        const std::scoped_lock lock(m_mutex);
        m_lines.emplace(number, std::move(line));
        while (!m_lines.empty() && m_lines.begin()->first == m_next) {
            m_report(m_lines.begin()->second);
            m_lines.erase(m_lines.begin());
            ++m_next;
        }
    }

private:
    const std::function<void(const std::string &)> &m_report;
    std::mutex m_mutex;
    std::map<int, std::string> m_lines;
    int m_next = 1;
};

} // namespace

void makeRoll(const RollOptions &options, const std::function<void(const std::string &)> &report)
{
    const test::QrMatrix code = test::encodeQr(options.payload, options.level);
    std::filesystem::create_directories(options.folder);

    OrderedReport ordered(report);
    std::mutex mutex;
    int next = 1;
    std::exception_ptr failure;
    const auto work = [&] {
        while (true) {
            int number = 0;
            {
                const std::scoped_lock lock(mutex);
                if (failure || next > options.frames) {
                    return;
                }
                number = next++;
            }
            try {
                test::SimulatedFrame frame = planFrame(options, number);
                if (number == options.slateAt) {
                    frame.cards.push_back(layCard(options, code));
                }
                ordered.add(number, writeFrame(options, frame, number));
            } catch (...) {
                const std::scoped_lock lock(mutex);
                failure = std::current_exception();
            }
        }
    };
    {
        std::vector<std::jthread> workers;
        const int count = std::min(options.jobs, options.frames);
        workers.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i) {
            workers.emplace_back(work);
        }
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}

} // namespace quillmark::tools
