// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "prove/bone_facts.h"
#include "prove/compare.h"

namespace prove {

/// What one cause does to a package.
struct Explanation {
  Cause cause = Cause::None;
  Worst worst;                     ///< of the vertices that it moves
  size_t vertices = 0;             ///< that it moves beyond the limit
  std::vector<std::string> names;  ///< bones or meshes that it is about, in the order of the package
};

struct Explanations {
  std::vector<Explanation> causes;  ///< the worst first, errors of ours before all others
  int32_t firstBone = -1;           ///< the first bone where model and package part; -1: none
};

/// Finds out why vertices are beyond the limit.
/// @param facts  of the skeleton's bones
/// @param mostInfluences  that vertices were to keep; 0: all
Explanations Explain(const actor::Skeleton& skeleton, const ModelRig& rig, const Matches& matches,
                     const std::vector<BoneFacts>& facts, const Comparison& comparison, int mostInfluences);

}  // namespace prove
