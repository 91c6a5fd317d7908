// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "actor/actor.h"

namespace actor {

/// Reads a material file from memory; `material.name` stays. Blanks and line ends between the elements do not
/// matter, their order does. No XML reader: picture names stand in these files as they are, "&" and all.
/// @return false when the bytes are no such file from first to last; `error` tells why
bool ReadMaterial(std::string_view bytes, Material& material, std::string& error);

}  // namespace actor
