// SPDX-License-Identifier: MIT
#pragma once

#include "scene/gltf/document.h"

namespace scene::gltf {

class JsonValue;

/// What the extensions VRM (0.x) and VRMC_vrm (1.0) of a file say; nothing without them.
/// @throws Fault
Avatar ReadAvatar(JsonValue extensions, size_t nodeCount);

}  // namespace scene::gltf
