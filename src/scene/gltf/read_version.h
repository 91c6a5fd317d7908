// SPDX-License-Identifier: MIT
#pragma once

#include "scene/gltf/document.h"

namespace scene::gltf {

class JsonValue;

/// The version that a file says it is of.
/// @throws VersionFault for one that is not read, Fault for JSON that is not of glTF
std::pair<int, int> ReadVersion(JsonValue asset);

}  // namespace scene::gltf
