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
};

/// What is to be known of each bone of `skeleton`.
std::vector<BoneFacts> FindBoneFacts(const actor::Skeleton& skeleton, const ModelRig& rig, double diagonal);

/// Why the package has no bone for `node`, or gives its weights to another.
Cause WhyNoBone(int32_t node, const actor::Skeleton& skeleton, const ModelRig& rig);

}  // namespace prove
