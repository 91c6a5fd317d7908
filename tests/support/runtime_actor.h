// SPDX-License-Identifier: MIT
#pragma once

#include <cal3d/cal3d.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/package_reader.h"

namespace support {

/// A package in the runtime that its files are made for.
class RuntimeActor {
 public:
  struct Mesh {
    std::string name;  ///< without extension
    CmfMesh file;      ///< read strictly; the runtime does not notice files that are cut off
    int id = -1;
  };

  /// Loads skeleton, meshes and materials. A material without a picture's name gets one in the copy that is
  /// loaded: the runtime refuses empty elements.
  /// @throws std::runtime_error when the runtime refuses a file
  explicit RuntimeActor(const Package& package);

  const std::vector<Mesh>& Meshes() const { return meshes_; }
  const std::vector<CsfBone>& Bones() const { return bones_; }

  /// The vertices of `mesh` as the runtime skins them in the current pose.
  std::vector<Floats3> Skinned(const Mesh& mesh) const;

  CalBone& Bone(size_t i) const { return *model_->getSkeleton()->getBone(static_cast<int>(i)); }
  /// Turns bone `i` by `turn`, in its own axes, and everything below it; all others stand as bound.
  void Turn(size_t i, const CalQuaternion& turn);
  /// Puts every bone where an animation has it in its parent.
  void Pose(const std::vector<std::pair<CalVector, CalQuaternion>>& places);
  /// Whether bone `i` is `top` or below it.
  bool IsBelow(size_t i, size_t top) const;

 private:
  std::vector<CsfBone> bones_;
  std::vector<Mesh> meshes_;
  std::unique_ptr<CalCoreModel> core_;
  std::unique_ptr<CalModel> model_;
};

/// What `CheckInRuntime` measured.
struct RuntimeFigures {
  size_t meshes = 0, vertices = 0, limbs = 0, moved = 0;
  double deviation = 0.0;  ///< largest, as a part of the model's diagonal
};

/// Loads `package` and expects: in the bind pose each vertex stands `offset` away from where its mesh has it,
/// and when a limb turns, its vertices turn rigidly around its bone, by their weight, and no others move.
/// @param limb  number of the bone to turn, or -1: one that some but not all vertices hang on
RuntimeFigures CheckInRuntime(const Package& package, const Floats3& offset = {}, int limb = -1);

}  // namespace support
