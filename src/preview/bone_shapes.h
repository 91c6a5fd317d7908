// SPDX-License-Identifier: MIT
#pragma once

#include "actor/actor.h"
#include "preview/camera.h"
#include "preview/canvas.h"

namespace preview {

/// Draws every bone as a long octahedron that points to its child, and every joint as a small one.
/// @param radius of the model, in its units: the joints' size depends on it
void DrawBones(const actor::Skeleton& skeleton, const Camera& camera, double radius, Canvas& canvas,
               int samples);

}  // namespace preview
