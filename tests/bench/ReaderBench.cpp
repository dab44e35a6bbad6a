// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// How fast the reader is on frames without a code, and how many simulated slates it reads
// beside the library alone.
//   bench-reader [TRIALS]   60 trials unless told otherwise

#include "bench/Measure.h"
#include "detection/QrReader.h"
#include "support/simulator/TrialSet.h"

#include <ZXing/ReadBarcode.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

namespace quillmark {
namespace {

constexpr std::uint64_t trialSeed = 1;

/// Milliseconds of processor time that this process has had, on all cores.
double processorMilliseconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

void printFrameWithoutCode(test::Clutter clutter, double grain, const char *name)
{
    test::SimulatedFrame frame;
    frame.width = 6000;
    frame.height = 4000;
    frame.seed = 70;
    frame.clutter = clutter;
    frame.film.grain = grain;
    frame.film.dust = 20;
    const LumaImage luma = test::renderLuma(frame);
    double wall = 1e9;
    double processor = 1e9;
    std::size_t found = 0;
    for (int i = 0; i < 7; ++i) {
        const double before = processorMilliseconds();
        wall = std::min(wall, bench::milliseconds([&] { found = readQrCodes(luma, 1).size(); }));
        processor = std::min(processor, processorMilliseconds() - before);
    }
    std::printf("%-28s %7.1f ms %7.1f ms of processor %4zu codes\n", name, wall, processor, found);
}

struct Reader {
    const char *name;
    std::function<bool(const LumaImage &, const QString &)> reads;
    int read = 0;
    double milliseconds = 0;
};

bool libraryReads(const LumaImage &luma, const std::string &text, bool tryHarder)
{
    ZXing::DecodeHints hints;
    hints.setFormats(ZXing::BarcodeFormat::QRCode);
    hints.setTryHarder(tryHarder);
    hints.setTryDownscale(tryHarder);
    const ZXing::ImageView view(luma.pixels.data(), luma.width, luma.height,
                                ZXing::ImageFormat::Lum);
    return std::ranges::any_of(ZXing::ReadBarcodes(view, hints),
                               [&](const ZXing::Result &result) { return result.text() == text; });
}

bool readsPlainly(const LumaImage &luma, const QString &text)
{
    return libraryReads(luma, text.toStdString(), false);
}

bool readsWithEffort(const LumaImage &luma, const QString &text)
{
    if (libraryReads(luma, text.toStdString(), true)) {
        return true;
    }
    LumaImage inverted = luma;
    for (std::uint8_t &pixel : inverted.pixels) {
        pixel = static_cast<std::uint8_t>(255 - pixel);
    }
    return libraryReads(inverted, text.toStdString(), true);
}

bool quillmarkReads(const LumaImage &luma, const QString &text)
{
    return std::ranges::any_of(readQrCodes(luma, 1),
                               [&](const std::optional<QString> &read) { return read == text; });
}

void printRecall(int trials)
{
    std::vector<Reader> readers{{"ZXing", readsPlainly},
                                {"ZXing, harder, inverted", readsWithEffort},
                                {"Quillmark", quillmarkReads}};
    for (int index = 0; index < trials; ++index) {
        const test::Trial trial = test::makeTrial(trialSeed, index);
        const LumaImage luma = test::renderLuma(trial.frame);
        const QString text = QString::fromUtf8(trial.payload);
        for (Reader &reader : readers) {
            bool read = false;
            reader.milliseconds += bench::milliseconds([&] { read = reader.reads(luma, text); });
            reader.read += read ? 1 : 0;
        }
    }
    std::printf("%-28s %10s %12s\n", "reader", "slates", "ms a frame");
    for (const Reader &reader : readers) {
        std::printf("%-28s %4d of %3d %12.1f\n", reader.name, reader.read, trials,
                    reader.milliseconds / trials);
    }
}

} // namespace
} // namespace quillmark

int main(int argc, char **argv)
{
    const int trials = argc > 1 ? std::atoi(argv[1]) : 60;
    if (trials <= 0) {
        std::fputs("usage: bench-reader [TRIALS]\n", stderr);
        return EXIT_FAILURE;
    }
    using quillmark::test::Clutter;
    std::puts("24 megapixels without a code:");
    quillmark::printFrameWithoutCode(Clutter::none, 0.02, "landscape, fine grain");
    quillmark::printFrameWithoutCode(Clutter::none, 0.06, "landscape, coarse grain");
    quillmark::printFrameWithoutCode(Clutter::buildings, 0.02, "buildings");
    quillmark::printFrameWithoutCode(Clutter::print, 0.02, "printed pages");
    quillmark::printRecall(trials);
    return EXIT_SUCCESS;
}
