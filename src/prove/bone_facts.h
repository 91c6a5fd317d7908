// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "actor/actor.h"
#include "prove/causes.h"
#include "prove/model_rig.h"

namespace prove {

/// Why a bone of the package is not where the model has it; None when it is.
struct BoneFacts {
  Cause place = Cause::None;  ///< its place in its parent
  Cause space = Cause::None;  ///< its bone space

  // What the bones above hand down.
  Cause chain =
      Cause::None;         ///< what is wrong with places from here up: errors of ours first, then the highest
  int32_t chainBone = -1;  ///< whose place that is
  Cause nearest = Cause::None;  ///< what is wrong with the place of this bone or the next above
  double shear = 0.0;           ///< scale that differs along the axes, from here up
  size_t depth = 1;             ///< bones from here up
};

/// What is to be known of each bone of `skeleton`.
std::vector<BoneFacts> FindBoneFacts(const actor::Skeleton& skeleton, const ModelRig& rig, double diagonal);

/// For each node of the model the next one, from itself upwards, with a scale that bones cannot have; -1: none.
struct NodeFacts {
  std::vector<int32_t> uneven;     ///< differs along the axes at bind time
  std::vector<int32_t> scaledNow;  ///< differs from that at bind time now
};
NodeFacts FindNodeFacts(const ModelRig& rig);

/// Why the package has no bone for `node`, or gives its weights to another.
Cause WhyNoBone(int32_t node, const actor::Skeleton& skeleton, const ModelRig& rig);

}  // namespace prove
