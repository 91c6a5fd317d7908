// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace scene::gltf {

/// Refuses text whose values would take more memory, parsed, than those of any honest file of this size, or
/// that is nested too deep. Looks at brackets, commas and strings only.
/// @throws Fault
void CheckJsonClaims(std::string_view json, uint64_t fileSize);

}  // namespace scene::gltf
