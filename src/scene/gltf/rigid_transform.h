// SPDX-License-Identifier: MIT
#pragma once

#include "scene/math/matrix.h"

namespace scene::gltf {

bool IsInvertible(const KFbxXMatrix& m);

/// `m` without scale and shear.
KFbxXMatrix WithoutScale(const KFbxXMatrix& m);

}  // namespace scene::gltf
