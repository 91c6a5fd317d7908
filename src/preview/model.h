// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "actor/actor.h"
#include "preview/vectors.h"

namespace preview {

/// `source` without what cannot be drawn: faces and influences whose numbers lead nowhere, faces with corners
/// that are no numbers, parents that do not come before their children. Numbers that are none become 0.
actor::Actor Drawable(const actor::Actor& source);

/// Where each bone sits in the model when it was bound. Bone space tells: that is where the meshes are,
/// whatever scale the root has.
std::vector<Vector> BoneOrigins(const actor::Skeleton& skeleton);

/// Every vertex that a face uses, but for a few that may lie far from all others: nobody would see the model
/// in a picture that has room for them.
std::vector<Vector> BulkPoints(const actor::Actor& drawable);

/// The box around those points; around the bones when there are none.
base::Box ModelBounds(const actor::Actor& drawable);

}  // namespace preview
