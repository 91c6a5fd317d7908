// SPDX-License-Identifier: MIT
#pragma once

#include "scene/gltf/bones.h"
#include "scene/gltf/bound_skin.h"
#include "scene/gltf/node_places.h"

namespace scene::gltf {

struct BoundSkins {
  std::vector<BoundSkin> skins;  ///< of each skin of the document
  bool isPosed = false;          ///< the joints stand otherwise now than when their skins were bound
};

/// A skin is put where its topmost joint stands now; the others stand around that one as the inverse bind matrices
/// say. Of a skeleton that is posed it is put where the node of its mesh stands, if that is near, and without such
/// matrices all joints stay.
/// @param world   what the world of the file becomes
/// @param places  the joints that are shown are fixed there
/// @throws Fault
BoundSkins BindSkins(const Document& document, const AccessorReader& accessors, const ShownNodes& shown,
                     const Bones& bones, const KFbxXMatrix& world, NodePlaces& places);

}  // namespace scene::gltf
