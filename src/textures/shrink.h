// SPDX-License-Identifier: MIT
#pragma once

#include "textures/image.h"

namespace textures {

/// The image with its sides divided by the same number, so that none is longer than `longestSide` pixels: each pixel is
/// the mean of those in its place, see-through ones counting less. An image that fits stays as it is.
Image ShrinkToFit(Image image, int longestSide);

}  // namespace textures
