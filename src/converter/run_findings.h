// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/finding.h"
#include "textures/texture_converter.h"

namespace ts3d {

/// What the library and the tool tell of a conversion in the words of findings.

/// Why a conversion failed with the result `code`.
Finding FailureFinding(int32_t code, const std::string& reason);
/// Arrays of the model that cannot be unpacked.
std::vector<Finding> DamageFindings(const std::vector<std::string>& arrays);
/// Pictures that are not in the package.
std::vector<Finding> TextureFindings(const std::vector<textures::TextureProblem>& problems);

}  // namespace ts3d
