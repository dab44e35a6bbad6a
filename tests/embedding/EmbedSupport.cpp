// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "EmbedSupport.h"

#include "support/Await.h"

#include <algorithm>

namespace quillmark::test {

namespace fs = std::filesystem;

QString generatorVersion()
{
    return QStringLiteral("quillmark-macos@0.0.0");
}

RasterImage picture(int width, int height)
{
    RasterImage image{width, height, 3, {}};
    for (int i = 0; i < width * height * 3; ++i) {
        image.samples.push_back(static_cast<std::uint16_t>(i * 1237 % 65536));
    }
    return image;
}

void embed(const std::vector<fs::path> &files, const SlatePayload &payload)
{
    await(Exiftool::embed(files, payload, generatorVersion()));
}

std::string xmpText(const fs::path &file)
{
    const std::string bytes = readFile(file);
    const std::size_t begin = std::min(bytes.find("<x:xmpmeta"), bytes.size());
    return bytes.substr(begin, bytes.find("</x:xmpmeta>", begin) - begin);
}

bool isTagged(const fs::path &file)
{
    return xmpText(file).find("<quillmark:SessionId>") != std::string::npos;
}

fs::path ExiftoolOnJpeg::jpeg(const fs::path &name) const
{
    writeJpeg(m_folder / name, picture());
    return m_folder / name;
}

} // namespace quillmark::test
