// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "RollOptions.h"

#include "payload/SlatePayloadJson.h"
#include "support/Samples.h"

#include <QCommandLineParser>
#include <QFile>

#include <cmath>
#include <limits>
#include <string>
#include <thread>

namespace quillmark::tools {
namespace {

constexpr double largestMegapixels = 100;
constexpr int largestSide = 60000;

UsageError usageError(const QString &text)
{
    return UsageError{text.toStdString()};
}

/// A parser that knows the program's options and gives their values as numbers.
class RollParser
{
public:
    RollParser();

    RollOptions parse(const QStringList &arguments);

private:
    double number(const QString &option, double low, double high) const;
    int integer(const QString &option, int low, int high) const;
    void readSize(RollOptions &options) const;
    void readCard(RollOptions &options) const;
    void readFilm(RollOptions &options) const;
    QByteArray readPayload() const;
    std::uint64_t readSeed() const;

    QCommandLineParser m_parser;
};

RollParser::RollParser()
{
    m_parser.setApplicationDescription(QStringLiteral(
        "Makes a roll of scanned frames to try the program on: pictures that look like\n"
        "photographs, one of them showing a slate card. The same options and seed make the\n"
        "same frames."));
    m_parser.addHelpOption();
    m_parser.addVersionOption();
    m_parser.addPositionalArgument(QStringLiteral("folder"),
                                   QStringLiteral("Where the frames go; made if it is missing."));

    const auto add = [this](const char *name, const char *text, const char *value,
                            const char *standard) {
        m_parser.addOption({QString::fromLatin1(name), QString::fromLatin1(text),
                            QString::fromLatin1(value), QString::fromLatin1(standard)});
    };
    const auto addFlag = [this](const char *name, const char *text) {
        m_parser.addOption({QString::fromLatin1(name), QString::fromLatin1(text)});
    };
    add("frames", "How many frames, 1 to 999.", "count", "6");
    add("slate-at", "Which frame shows the slate, from 1; 0 for none.", "frame", "1");
    add("width", "Width of a frame in pixels.", "pixels", "3000");
    add("height", "Height of a frame in pixels.", "pixels", "2000");
    add("megapixels", "Size of a frame, three to two, in place of width and height; up to 100.",
        "number", "");
    add("format", "jpeg, tiff8, tiff16, or mixed (one after another).", "format", "jpeg");
    add("quality", "Quality of JPEG files, 1 to 100.", "number", "90");
    add("payload", "A JSON file with the slate's payload in place of the built-in example.", "file",
        "");
    add("level", "Error correction of the code: L, M, Q or H.", "level", "M");
    add("code-size", "Pixels along the side of one module of the code.", "pixels", "");
    add("place", "Centre of the code as shares of width and height, as in 0.5,0.4.", "x,y", "");
    add("tilt", "Degrees by which the card is turned clockwise.", "degrees", "0");
    add("perspective", "Degrees by which the card leans away, 0 to 60.", "degrees", "0");
    add("blur", "Blur of the card in modules of the code, 0 to 2.", "modules", "0.1");
    add("contrast", "Contrast, 0 to 1.", "share", "0.9");
    add("grain", "Strength of the grain, 0 to 0.5.", "share", "0.02");
    add("dust", "Specks and hairs on a frame, 0 to 1000.", "count", "10");
    add("scratches", "Scratches along the film, 0 to 100.", "count", "1");
    addFlag("negative", "Exchange light and dark, as on a scanned negative.");
    addFlag("mirrored", "Show the card mirrored, as film scanned from its back.");
    add("seed", "Any whole number from 0; another seed makes other frames.", "number", "1");
    add("jobs", "Frames made at the same time.", "count", "");
}

RollOptions RollParser::parse(const QStringList &arguments)
{
    m_parser.process(arguments);
    const QStringList folders = m_parser.positionalArguments();
    if (folders.size() != 1) {
        throw UsageError("Name one folder for the frames, or see --help.");
    }
    RollOptions options;
    options.folder = QFile::encodeName(folders.front()).toStdString();
    options.frames = integer(QStringLiteral("frames"), 1, 999);
    options.slateAt = integer(QStringLiteral("slate-at"), 0, options.frames);
    readSize(options);

    const QString format = m_parser.value(QStringLiteral("format"));
    if (format == QLatin1String("jpeg")) {
        options.format = RollFormat::jpeg;
    } else if (format == QLatin1String("tiff8")) {
        options.format = RollFormat::tiff8;
    } else if (format == QLatin1String("tiff16")) {
        options.format = RollFormat::tiff16;
    } else if (format == QLatin1String("mixed")) {
        options.format = RollFormat::mixed;
    } else {
        throw usageError(
            QStringLiteral("--format is jpeg, tiff8, tiff16 or mixed, not \"%1\".").arg(format));
    }
    options.quality = integer(QStringLiteral("quality"), 1, 100);

    options.payload = readPayload();
    readCard(options);
    readFilm(options);
    options.seed = readSeed();

    const auto cores = static_cast<int>(std::thread::hardware_concurrency());
    options.jobs = m_parser.isSet(QStringLiteral("jobs")) ? integer(QStringLiteral("jobs"), 1, 64)
                                                          : std::max(1, cores);
    return options;
}

double RollParser::number(const QString &option, double low, double high) const
{
    const QString text = m_parser.value(option);
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    if (!isNumber || !(value >= low && value <= high)) {
        throw usageError(QStringLiteral("--%1 is a number from %2 to %3, not \"%4\".")
                             .arg(option)
                             .arg(low)
                             .arg(high)
                             .arg(text));
    }
    return value;
}

int RollParser::integer(const QString &option, int low, int high) const
{
    const QString text = m_parser.value(option);
    bool isNumber = false;
    const int value = text.toInt(&isNumber);
    if (!isNumber || value < low || value > high) {
        throw usageError(QStringLiteral("--%1 is a whole number from %2 to %3, not \"%4\".")
                             .arg(option)
                             .arg(low)
                             .arg(high)
                             .arg(text));
    }
    return value;
}

void RollParser::readSize(RollOptions &options) const
{
    if (m_parser.isSet(QStringLiteral("megapixels"))) {
        const double pixels = 1e6 * number(QStringLiteral("megapixels"), 0.01, largestMegapixels);
        options.width = static_cast<int>(std::floor(std::sqrt(pixels * 1.5)));
        options.height = static_cast<int>(std::floor(pixels / options.width));
        return;
    }
    options.width = integer(QStringLiteral("width"), 16, largestSide);
    options.height = integer(QStringLiteral("height"), 16, largestSide);
    if (1e-6 * options.width * options.height > largestMegapixels) {
        throw usageError(QStringLiteral("%1 by %2 pixels are more than %3 megapixels.")
                             .arg(options.width)
                             .arg(options.height)
                             .arg(largestMegapixels));
    }
}

void RollParser::readCard(RollOptions &options) const
{
    const QString level = m_parser.value(QStringLiteral("level")).toUpper();
    const qsizetype index = QStringLiteral("LMQH").indexOf(level);
    if (level.size() != 1 || index < 0) {
        throw usageError(QStringLiteral("--level is L, M, Q or H, not \"%1\".").arg(level));
    }
    options.level = static_cast<test::QrLevel>(index);

    if (m_parser.isSet(QStringLiteral("code-size"))) {
        options.modulePixels = number(QStringLiteral("code-size"), 1, 1000);
    }
    if (m_parser.isSet(QStringLiteral("place"))) {
        const QStringList shares = m_parser.value(QStringLiteral("place")).split(u',');
        bool areNumbers = shares.size() == 2;
        if (areNumbers) {
            bool isX = false;
            bool isY = false;
            options.centreX = shares[0].toDouble(&isX);
            options.centreY = shares[1].toDouble(&isY);
            areNumbers = isX && isY && *options.centreX >= 0 && *options.centreX <= 1 &&
                         *options.centreY >= 0 && *options.centreY <= 1;
        }
        if (!areNumbers) {
            throw UsageError("--place is two shares from 0 to 1, as in 0.5,0.4.");
        }
    }
    options.tilt = number(QStringLiteral("tilt"), -360, 360);
    options.perspective = number(QStringLiteral("perspective"), 0, 60);
    options.blur = number(QStringLiteral("blur"), 0, 2);
    options.mirrored = m_parser.isSet(QStringLiteral("mirrored"));
}

void RollParser::readFilm(RollOptions &options) const
{
    options.contrast = number(QStringLiteral("contrast"), 0, 1);
    options.grain = number(QStringLiteral("grain"), 0, 0.5);
    options.dust = integer(QStringLiteral("dust"), 0, 1000);
    options.scratches = integer(QStringLiteral("scratches"), 0, 100);
    options.negative = m_parser.isSet(QStringLiteral("negative"));
}

QByteArray RollParser::readPayload() const
{
    if (!m_parser.isSet(QStringLiteral("payload"))) {
        return slatePayloadToJson(test::fullPayload());
    }
    QFile file(m_parser.value(QStringLiteral("payload")));
    if (!file.open(QIODevice::ReadOnly)) {
        throw usageError(QStringLiteral("Cannot read the payload \"%1\": %2.")
                             .arg(file.fileName(), file.errorString()));
    }
    return file.readAll().trimmed();
}

std::uint64_t RollParser::readSeed() const
{
    const QString text = m_parser.value(QStringLiteral("seed"));
    bool isNumber = false;
    const quint64 value = text.toULongLong(&isNumber);
    if (!isNumber) {
        throw usageError(QStringLiteral("--seed is a whole number from 0, not \"%1\".").arg(text));
    }
    return value;
}

} // namespace

RollOptions parseRollOptions(const QStringList &arguments)
{
    return RollParser().parse(arguments);
}

} // namespace quillmark::tools
