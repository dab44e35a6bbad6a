// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

// Which QR readers read which simulated pictures, and in what time. Prints one JSON object a
// picture, as it goes.
//   bench-recall SET SEED FIRST STEP END [READER...]
//       pictures FIRST, FIRST + STEP and so on below END; all readers unless some are named
//   bench-recall picture SET SEED INDEX FILE.jpg
// The sets are slates, photos, empty and large.

#include "bench/recall/Pictures.h"
#include "bench/recall/Readers.h"

#include "bench/Measure.h"
#include "support/ImageFiles.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <stdexcept>
#include <string>

namespace quillmark::bench {
namespace {

QJsonObject outcomeOf(const Reader &reader, const Picture &picture)
{
    std::vector<QByteArray> contents;
    const double before = processorMilliseconds();
    const double wall = milliseconds([&] { contents = reader.read(picture.luma); });
    const double processor = processorMilliseconds() - before;
    const auto right = std::ranges::count(contents, picture.content);
    return {{QStringLiteral("read"), right > 0},
            {QStringLiteral("false"), static_cast<qint64>(contents.size()) - right},
            {QStringLiteral("ms"), wall},
            {QStringLiteral("cpu_ms"), processor}};
}

void printPicture(const std::vector<Reader> &readers, const Picture &picture, int index)
{
    QJsonObject outcomes;
    for (const Reader &reader : readers) {
        outcomes[QString::fromLatin1(reader.name)] =
            reader.read ? QJsonValue(outcomeOf(reader, picture)) : QJsonValue();
    }
    QJsonObject line{{QStringLiteral("index"), index},
                     {QStringLiteral("class"), picture.difficulty},
                     {QStringLiteral("width"), picture.luma.width},
                     {QStringLiteral("height"), picture.luma.height},
                     {QStringLiteral("about"), picture.about},
                     {QStringLiteral("readers"), outcomes}};
    if (picture.oracle) {
        const test::OracleAnswer answer = picture.oracle(picture.luma);
        line[QStringLiteral("oracle")] = answer.reads;
        line[QStringLiteral("equalized oracle")] = answer.readsEqualized;
    }
    std::puts(QJsonDocument(line).toJson(QJsonDocument::Compact).constData());
    std::fflush(stdout);
}

void savePicture(const Picture &picture, const char *file)
{
    test::RasterImage image{picture.luma.width, picture.luma.height, 1};
    image.samples.reserve(picture.luma.pixels.size());
    for (const std::uint8_t pixel : picture.luma.pixels) {
        image.samples.push_back(static_cast<std::uint16_t>(pixel * 257));
    }
    test::writeJpeg(file, image, {.quality = 95});
}

/// Of those named, which is all where none is.
std::vector<Reader> readersNamed(std::span<const std::string> names)
{
    std::vector<Reader> readers = allReaders();
    std::erase_if(readers, [names](const Reader &reader) {
        return !names.empty() && std::ranges::find(names, reader.name) == names.end();
    });
    return readers;
}

int run(const std::vector<std::string> &arguments)
{
    if (arguments.size() == 5 && arguments[0] == "picture") {
        const PictureSet set = pictureSet(arguments[1]);
        savePicture(set(std::stoull(arguments[2]), std::stoi(arguments[3])), arguments[4].c_str());
        return EXIT_SUCCESS;
    }
    if (arguments.size() < 5) {
        throw std::invalid_argument("usage: bench-recall SET SEED FIRST STEP END [READER...] | "
                                    "picture SET SEED INDEX FILE.jpg");
    }
    const PictureSet set = pictureSet(arguments[0]);
    const std::uint64_t seed = std::stoull(arguments[1]);
    const std::vector<Reader> readers = readersNamed(std::span(arguments).subspan(5));
    const int step = std::max(1, std::stoi(arguments[3]));
    for (int index = std::stoi(arguments[2]); index < std::stoi(arguments[4]); index += step) {
        printPicture(readers, set(seed, index), index);
    }
    return EXIT_SUCCESS;
}

} // namespace
} // namespace quillmark::bench

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    try {
        return quillmark::bench::run({argv + 1, argv + argc});
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "bench-recall: %s\n", failure.what());
    }
    return EXIT_FAILURE;
}
