// SPDX-License-Identifier: MIT
#pragma once

#include "actor/actor.h"
#include "export/gltf_buffer.h"

namespace actor {

/// Adds nodes of the bones, node number = bone number. They stand where bone space has them, so that the skin at
/// rest changes nothing, whatever the root's scale did to the stored translations.
void AddBoneNodes(const Skeleton& skeleton, GltfList& nodes);

/// Adds the skin of all bones: their numbers and what undoes their places.
void AddSkin(const Skeleton& skeleton, GltfBuffer& buffer, GltfList& skins);

/// Adds the mesh's joints and weights to a primitive's `attributes`, as many sets of four as a vertex needs,
/// the 16 strongest at most. Weights add up to 1; a vertex without any hangs on the first bone.
void AddJoints(const Mesh& mesh, size_t boneCount, GltfBuffer& buffer, ts3d::JsonWriter& attributes);

}  // namespace actor
