// SPDX-License-Identifier: MIT
#pragma once

#include "scene/model/scene.h"

namespace support {

/// Expects what holds for every scene, however damaged its file was: indices lie in their ranges, lists fit
/// each other, the tree is one. Reads every array on the way.
void CheckScene(scene::KFbxScene& scene);

}  // namespace support
