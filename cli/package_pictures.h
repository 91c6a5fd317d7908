// SPDX-License-Identifier: MIT
#pragma once

#include "actor/export_model.h"
#include "preview/texture.h"
#include "textures/image.h"

namespace cli {

/// Decodes a picture of a package as it is meant to be seen.
/// @throws std::runtime_error as DecodeImage does
Image DecodePicture(const actor::Picture& picture);

/// The picture as PNG; empty, after a warning, when it cannot be decoded.
actor::EncodedPicture EncodePicture(const actor::Picture& picture);

/// Decodes pictures for drawing, up to 512 MiB of pixels in all. What is beyond that or cannot be decoded is
/// left out after a warning.
preview::PictureDecoder PixelDecoder();

}  // namespace cli
