// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#include "detection/ExifOrientation.h"

#include <libexif/exif-data.h>

#include <limits>
#include <memory>
#include <optional>

namespace quillmark {
namespace {

std::optional<std::int64_t> wholeNumber(const ExifEntry &entry, ExifByteOrder order)
{
    if (entry.components != 1 || entry.data == nullptr ||
        entry.size < exif_format_get_size(entry.format)) {
        return std::nullopt;
    }
    switch (entry.format) {
    case EXIF_FORMAT_BYTE:
        return entry.data[0];
    case EXIF_FORMAT_SBYTE:
        return static_cast<std::int8_t>(entry.data[0]);
    case EXIF_FORMAT_SHORT:
        return exif_get_short(entry.data, order);
    case EXIF_FORMAT_SSHORT:
        return exif_get_sshort(entry.data, order);
    case EXIF_FORMAT_LONG:
        return exif_get_long(entry.data, order);
    case EXIF_FORMAT_SLONG:
        return exif_get_slong(entry.data, order);
    default:
        return std::nullopt;
    }
}

} // namespace

std::uint32_t exifOrientation(std::span<const unsigned char> block)
{
    const std::unique_ptr<ExifData, void (*)(ExifData *)> data(exif_data_new(), exif_data_unref);
    if (!data) {
        return 1;
    }
    // The numbers are wanted as stored; by default the library mends what is unusual.
    exif_data_unset_option(data.get(), EXIF_DATA_OPTION_FOLLOW_SPECIFICATION);
    exif_data_load_data(data.get(), block.data(), static_cast<unsigned>(block.size()));
    const ExifEntry *entry = exif_content_get_entry(data->ifd[EXIF_IFD_0], EXIF_TAG_ORIENTATION);
    if (entry == nullptr) {
        return 1;
    }
    const std::optional<std::int64_t> number =
        wholeNumber(*entry, exif_data_get_byte_order(data.get()));
    if (!number || *number < 0 || *number > std::numeric_limits<std::uint32_t>::max()) {
        return 1;
    }
    return static_cast<std::uint32_t>(*number);
}

} // namespace quillmark
