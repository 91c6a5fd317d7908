// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "prove/model_rig.h"
#include "scene/model/mesh.h"

namespace prove {

/// The influence of one node on a mesh.
struct Influence {
  int32_t link = -1;       ///< in `ModelRig::nodes`
  Affine bind;             ///< from the mesh's own space to that of the link
  int32_t associate = -1;  ///< of an additive cluster; -1: none
  Affine associateBind;    ///< its world transform at bind time
};

struct Weight {
  uint32_t influence;
  double weight;
};

/// A mesh of the model with its skins.
struct ModelMesh {
  using Mode = scene::KFbxCluster::ELinkMode;

  int32_t node = -1;
  Mode mode = Mode::eNORMALIZE;  ///< of the first cluster of the first skin, which decides for all
  Affine geometric;              ///< applies to the points alone
  std::vector<Point> points;    ///< control points with the shapes as they stand now, in the mesh's own space
  std::vector<Point> modelled;  ///< the same without shapes; empty when there are none
  std::vector<Influence> influences;
  std::vector<uint32_t> ends;   ///< end of each point's weights in `weights`
  std::vector<Weight> weights;  ///< none of them 0
  std::vector<char> isNamed;    ///< whether some cluster has the point, with whatever weight

  std::span<const Weight> WeightsOf(size_t point) const;
};

ModelMesh ReadModelMesh(scene::KFbxNode& node, const ModelRig& rig);

/// Where the points of `mesh` are, in the model's world, when its nodes stand as `worlds` says.
void Deform(const ModelMesh& mesh, const std::vector<Affine>& worlds, std::vector<Point>& points);

}  // namespace prove
