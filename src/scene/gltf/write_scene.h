// SPDX-License-Identifier: MIT
#pragma once

#include <deque>

#include "scene/container/record_tree.h"
#include "scene/gltf/geometry.h"

namespace scene::gltf {

/// Writes what an FBX file of the same character would hold into `tree`: bones and meshes with their skins, a
/// bind pose, materials, pictures and the names of the motions. Meshes stand in the world, below no other node.
/// @param meshes  get what the records point to; they stay as long as the tree
/// @param root  name of the bone that joins several top bones; empty when that was not needed
/// @throws Fault
void WriteScene(const Document& document, const BufferBytes& bytes, const Rig& rig,
                const AccessorReader& accessors, Budget& budget, RecordTree& tree,
                std::deque<Geometry>& meshes, std::string& root);

}  // namespace scene::gltf
