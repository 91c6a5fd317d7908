// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/mesh_filter.h"
#include "scene/model/node.h"

namespace ts3d {

/// An output mesh, or a material, of the scene.
struct ListedName {
  std::string name;
  std::string mesh;  ///< the name of the mesh that it is a part of
};

/// All that the document lists for a scene, and what the package has files for, if it is not left out.
class MeshList {
 public:
  /// Goes through the nodes below `root`, parents first, children in order. A mesh without control points is
  /// not listed and hides the nodes below it.
  explicit MeshList(const scene::KFbxNode& root);

  bool IsEmpty() const { return isEmpty_; }

  /// Where the own name of a mesh comes: before those of its further materials, as in the document, or after
  /// them, as in the package.
  enum class OwnName { First, Last };

  void ForEach(OwnName place, const std::function<void(const ListedName&)>& visit) const;
  size_t CountNames() const;

 private:
  struct Mesh {
    std::string name;
    int nameCount = 0;  ///< none for those that are not listed
  };

  std::vector<Mesh> meshes_;
  bool isEmpty_ = true;
};

/// Whether it is left out: by its own name, or with the whole mesh that was asked to be left out.
bool IsLeftOut(const ListedName& listed, const MeshFilter& filter);

}  // namespace ts3d
