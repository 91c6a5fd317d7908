// SPDX-License-Identifier: MIT
#pragma once

#include "scene/math/matrix.h"

namespace scene::gltf {

class JsonValue;

/// What a node does to what is below it: its matrix, or else its translation, rotation and scale.
KFbxXMatrix ReadNodeTransform(JsonValue node);

}  // namespace scene::gltf
