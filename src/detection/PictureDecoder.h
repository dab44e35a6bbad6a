// SPDX-FileCopyrightText: 2026 Quillmark authors
// SPDX-License-Identifier: MIT

#pragma once

#include "detection/PictureImage.h"

#include <filesystem>
#include <stop_token>

namespace quillmark {

/// Decodes the first image of a JPEG or TIFF file for looking at: in colour, upright, and no
/// larger than `largest` (of the upright picture, in pixels, both above 0). It is made
/// smaller by averaging areas while it is decoded, and never enlarged.
///
/// Reads every file that decodeFrame() reads, and shows what is left of a damaged one with
/// the rest in mid-grey. Channels that carry no colour, as infrared or transparency, are
/// passed over. Deep samples that fill a small part of their range only are stretched,
/// all colours alike.
///
/// Colours are taken as they are stored: profiles, white points and transfer curves are not
/// applied, linear scans stay linear. Inks are simply multiplied, and L*a*b* becomes sRGB.
///
/// Throws SlateDetectionError (imageDecodeFailed) as decodeFrame() does, and soon after a stop
/// was asked for. Blocks; any thread
/// but the main one; holds the small picture, and some rows of the large one or what its
/// format needs to be decoded at all (a tile, a compressed strip, the coefficients of a JPEG of
/// several scans).
PictureImage decodePicture(const std::filesystem::path &file, PictureSize largest,
                           const std::stop_token &stop = {});

} // namespace quillmark
