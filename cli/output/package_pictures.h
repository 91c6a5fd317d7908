// SPDX-License-Identifier: MIT
#pragma once

#include "export/export_model.h"
#include "preview/texture.h"

namespace cli {

/// Encodes pictures as PNG. What cannot be decoded, or is larger than the pictures of an honest package are
/// (see PictureBudget), is left out after a warning.
actor::PictureEncoder PngEncoder();

/// Decodes pictures for drawing, which keeps them all: up to kFreePixels, whatever their files hold. What is
/// beyond that or cannot be decoded is left out after a warning.
preview::PictureDecoder PixelDecoder();

}  // namespace cli
