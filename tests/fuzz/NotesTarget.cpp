// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "app/updates/ReleaseNotes.h"
#include "fuzz/Target.h"

#include <QGuiApplication>

namespace quillmark::fuzz {
namespace {

void startApplication()
{
    static int count = 1;
    static char name[] = "notes";
    static char *arguments[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QGuiApplication application(count, arguments);
}

/// The first byte tells the format.
void readNotes(Bytes bytes)
{
    using Format = AppcastItem::NotesFormat;
    if (bytes.empty()) {
        return;
    }
    const auto format = static_cast<Format>(bytes[0] % 3);
    const QString notes = QString::fromUtf8(reinterpret_cast<const char *>(bytes.data()) + 1,
                                            static_cast<qsizetype>(bytes.size()) - 1);
    const std::vector<NoteLine> lines = readReleaseNotes(notes, format);
    require(lines.size() <= mostNoteLines, "notes have no more lines than are shown");
    for (const NoteLine &line : lines) {
        if (line.kind == NoteLine::Kind::Link) {
            require(line.address.isValid() && line.address.userInfo().isEmpty() &&
                        (line.address.scheme() == QStringLiteral("https") ||
                         line.address.scheme() == QStringLiteral("http")),
                    "a link leads to the web");
        }
    }
}

} // namespace
} // namespace quillmark::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    quillmark::fuzz::startApplication();
    const quillmark::fuzz::TimeLimit limit;
    quillmark::fuzz::readNotes({data, size});
    return 0;
}
