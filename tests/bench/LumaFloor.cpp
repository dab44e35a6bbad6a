// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "bench/LumaFloor.h"

#include <cstddef>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>

// Needs stdio's types before it.
#include <jpeglib.h>

namespace quillmark::bench {

LumaFloor::LumaFloor(const std::filesystem::path &jpeg)
{
    std::ifstream in(jpeg, std::ios::binary);
    m_file.assign(std::istreambuf_iterator<char>(in), {});
    if (m_file.empty()) {
        throw std::runtime_error("nothing to decode in " + jpeg.string());
    }
}

void LumaFloor::decode()
{
    jpeg_decompress_struct decoder{};
    jpeg_error_mgr errors{};
    decoder.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&decoder);
    jpeg_mem_src(&decoder, reinterpret_cast<const unsigned char *>(m_file.data()), m_file.size());
    jpeg_read_header(&decoder, TRUE);
    decoder.out_color_space = JCS_GRAYSCALE;
    jpeg_start_decompress(&decoder);
    m_pixels.resize(static_cast<std::size_t>(decoder.output_width) * decoder.output_height);
    while (decoder.output_scanline < decoder.output_height) {
        JSAMPROW row =
            &m_pixels[static_cast<std::size_t>(decoder.output_scanline) * decoder.output_width];
        jpeg_read_scanlines(&decoder, &row, 1);
    }
    jpeg_finish_decompress(&decoder);
    jpeg_destroy_decompress(&decoder);
}

} // namespace quillmark::bench
