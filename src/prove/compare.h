// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "prove/match_meshes.h"
#include "prove/poses.h"
#include "prove/runtime_pose.h"

namespace prove {

/// Up to this part of the model's diagonal, rounding may separate model and package.
inline constexpr double kLimit = 1e-5;

/// Worst place of something, in parts of the model's diagonal.
struct Worst {
  double error = 0.0;
  size_t mesh = 0;    ///< in `Matches::meshes`
  size_t vertex = 0;  ///< of that mesh file

  void Take(double e, size_t m, size_t v) {
    if (e > error) *this = {e, m, v};
  }
};

/// How far model and package are apart.
struct Comparison {
  double diagonal = 0.0;     ///< of the box around all compared points at bind time
  std::vector<Worst> poses;  ///< by pose
  std::vector<Worst> bones;  ///< by bone of the package, over all poses: of vertices that follow it most
  std::vector<std::vector<float>> atRest, now,
      turned;           ///< of each vertex, by mesh: bind, present, all others
  size_t unusable = 0;  ///< vertices that the model puts nowhere

  Worst Overall() const;
  double WorstOf(size_t mesh, size_t vertex) const;
  double WorstOf(size_t mesh) const;
};

/// Compares every vertex in every pose.
/// @param threads  at most; 0: as many as there are cores
Comparison Compare(const actor::Skeleton& skeleton, const ModelRig& rig, const Matches& matches,
                   const std::vector<Pose>& poses, double diagonal, unsigned threads);

/// Diagonal of the box around all compared points at bind time; 1 when they are all at one place.
double MeasureDiagonal(const ModelRig& rig, const Matches& matches);

/// The vertices of a mesh file in one pose.
struct DrawnMesh {
  std::vector<Point> model, package;  ///< where each has them, in the space of the files
};

/// All meshes of `matches` in a pose.
std::vector<DrawnMesh> DrawPose(const actor::Skeleton& skeleton, const ModelRig& rig, const Matches& matches,
                                const Pose& pose);

/// Where the package draws a mesh in a pose, and where the model has its points, in the space of the files.
template <typename Real>
std::vector<BoneMatrix<Real>> PosePackage(const actor::Skeleton& skeleton, const ModelRig& rig,
                                          const Pose& pose);
std::vector<Affine> PoseModel(const ModelRig& rig, const Pose& pose);

/// The bone that moves a vertex most, or -1.
int32_t MainBone(const actor::Mesh& mesh, const actor::Vertex& vertex);

}  // namespace prove
