// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "preview/canvas.h"

namespace preview {

/// Pictures of one height as one, from left to right.
Image SideBySide(const std::vector<Image>& pictures);

}  // namespace preview
