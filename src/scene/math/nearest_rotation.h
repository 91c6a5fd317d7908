// SPDX-License-Identifier: MIT
#pragma once

#include "scene/math/matrix.h"

namespace scene {

/// The linear part of `m`, where its axes' images are at right angles or `m` has no inverse; else the rotation
/// nearest to it, mirrored like `m`. Angles that GetR reads from sheared axes fit none of them, and least of
/// all near the poles of y.
KFbxXMatrix NearestRotationIfSheared(const KFbxXMatrix& m);

}  // namespace scene
