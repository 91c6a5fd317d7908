// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "preview/texture.h"

namespace cli {

/// Decodes a picture of a package for drawing. @return nothing when it cannot be read
std::optional<preview::Pixels> DecodePicture(const std::string& bytes);

}  // namespace cli
