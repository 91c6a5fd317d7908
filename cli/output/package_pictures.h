// SPDX-License-Identifier: MIT
#pragma once

#include "export/export_model.h"
#include "preview/texture.h"
#include "terminal/messages.h"

namespace cli {

/// Encodes pictures as PNG. What cannot be decoded, or is larger than the pictures of an honest package are
/// (see PictureBudget), is left out after a warning. `messages` outlives the encoder.
actor::PictureEncoder PngEncoder(Messages& messages);

/// Decodes pictures for drawing, which keeps them all: up to kFreePixels, whatever their files hold. What is
/// beyond that or cannot be decoded is left out after a warning.
preview::PictureDecoder PixelDecoder(Messages& messages);

}  // namespace cli
