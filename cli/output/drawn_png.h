// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "preview/canvas.h"

namespace cli {

/// A drawn picture as the bytes of a PNG file.
std::string ToPng(const preview::Image& drawn);

}  // namespace cli
