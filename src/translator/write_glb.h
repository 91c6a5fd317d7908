// SPDX-License-Identifier: MIT
#pragma once

#include <assimp/scene.h>

#include <string>

#include "translator/node_tree.h"

namespace translator {

/// What a format has of its own.
struct FormatTraits {
  const char* ending;           ///< by which the library knows it
  const char* jointRoot = "";   ///< node below which all are joints, or kSceneRoot; empty: those of skins
  bool hasApartMeshes = false;  ///< meshes of one node are no parts of one thing
  bool isTextureAlone = false;  ///< a material has a picture or a colour
  bool bindsInWorld = false;    ///< matrices of joints map from the world, not from the mesh
};

/// The scene as a GLB file, but for its numbers in lengths: they are those of the model.
/// @throws std::runtime_error
std::string WriteGlb(const aiScene& scene, const NodeTree& tree, const FormatTraits& format);

}  // namespace translator
