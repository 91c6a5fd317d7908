// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "actor/actor.h"
#include "base/vectors.h"

namespace actor {

using base::Box;

Box BoundsOf(const Mesh& mesh);

/// How far bones are from what hangs on them.
struct BoneDistance {
  size_t bones = 0;     ///< those that carry vertices with a weight above a half
  double median = 0.0;  ///< from the line that a bone makes to its nearest child to the middle of its
                        ///< vertices, as a part of the model's diagonal
};

/// Whether a distance shows that skeleton and meshes do not belong together. Sound characters of 15 and more
/// bones stay below 0.01; a skeleton that is shifted by a tenth of the diagonal is above 0.06. Few bones
/// carry so much of the model each that only a gross distance tells.
bool IsAway(const BoneDistance& distance);

BoneDistance MeasureBoneDistance(const Actor& actor);

/// The meshes that stand farther from every bone they hang on than the skeleton and all nearer meshes
/// together are large. None with few bones: these may stand anywhere.
std::vector<const Mesh*> FindMeshesAway(const Actor& actor);

}  // namespace actor
