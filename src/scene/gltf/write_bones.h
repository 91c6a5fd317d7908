// SPDX-License-Identifier: MIT
#pragma once

#include "scene/gltf/rig.h"
#include "scene/gltf/write_nodes.h"

namespace scene::gltf {

struct WrittenBones {
  std::vector<int64_t> ids;         ///< of each node of the document; kSceneRoot for those that are none
  std::vector<KFbxXMatrix> places;  ///< world transform of each bone, without scale, by node
  std::string addedRoot;  ///< name of the bone that joins several top bones; empty when that was not needed
};

/// Writes the skeleton. Bones carry no scale: it is in the points of their meshes.
/// @throws Fault
WrittenBones WriteBones(const Document& document, const Rig& rig, NodeWriter& nodes);

}  // namespace scene::gltf
