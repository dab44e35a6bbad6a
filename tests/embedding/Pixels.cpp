// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "Pixels.h"

#include "support/TempDir.h"

#include <cstdio> // jpeglib.h needs FILE

#include <jpeglib.h>
#include <tiffio.h>

#include <memory>
#include <stdexcept>

namespace quillmark::test {

std::string jpegPixels(const std::filesystem::path &file)
{
    const std::string bytes = readFile(file);
    jpeg_decompress_struct decoder{};
    jpeg_error_mgr errors{};
    decoder.err = ::jpeg_std_error(&errors);
    // A plain function pointer that leaves through an exception: the library keeps nothing
    // on its stack that would have to be released.
    errors.error_exit = [](j_common_ptr) { throw std::runtime_error("not a JPEG file"); };
    ::jpeg_create_decompress(&decoder);
    const std::unique_ptr<jpeg_decompress_struct, decltype(&::jpeg_destroy_decompress)> guard(
        &decoder, &::jpeg_destroy_decompress);

    ::jpeg_mem_src(&decoder, reinterpret_cast<const unsigned char *>(bytes.data()),
                   static_cast<unsigned long>(bytes.size()));
    ::jpeg_read_header(&decoder, TRUE);
    ::jpeg_start_decompress(&decoder);
    std::string row(std::size_t{decoder.output_width} *
                        static_cast<std::size_t>(decoder.output_components),
                    '\0');
    std::string pixels;
    while (decoder.output_scanline < decoder.output_height) {
        auto *target = reinterpret_cast<JSAMPROW>(row.data());
        ::jpeg_read_scanlines(&decoder, &target, 1);
        pixels += row;
    }
    ::jpeg_finish_decompress(&decoder);
    return pixels;
}

std::string tiffPixels(const std::filesystem::path &file)
{
    const std::unique_ptr<TIFF, decltype(&::TIFFClose)> tiff(::TIFFOpen(file.c_str(), "r"),
                                                             &::TIFFClose);
    if (!tiff) {
        throw std::runtime_error("not a TIFF file");
    }
    std::string pixels;
    do {
        std::string strip(static_cast<std::size_t>(::TIFFStripSize(tiff.get())), '\0');
        for (std::uint32_t i = 0; i < ::TIFFNumberOfStrips(tiff.get()); ++i) {
            const tmsize_t size = ::TIFFReadEncodedStrip(tiff.get(), i, strip.data(),
                                                         static_cast<tmsize_t>(strip.size()));
            if (size < 0) {
                throw std::runtime_error("a strip cannot be decoded");
            }
            pixels.append(strip, 0, static_cast<std::size_t>(size));
        }
    } while (::TIFFReadDirectory(tiff.get()) != 0);
    return pixels;
}

} // namespace quillmark::test
