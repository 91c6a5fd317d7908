// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "prove/model_rig.h"

namespace prove {

/// A pose to compare in.
struct Pose {
  enum class Kind { Bind, Present, Turned };
  Kind kind = Kind::Bind;
  std::string name;         ///< "bind", "present", "turned 7", "chain 3"
  std::vector<Turn> turns;  ///< as TurnedWorlds takes them; none unless Turned
};

/// Bind pose, present pose and `count` poses drawn from `seed`, the same on every system: in three of four
/// every bone is turned by up to 40 degrees, in the fourth a single chain by up to 120 each.
std::vector<Pose> MakePoses(const actor::Skeleton& skeleton, const ModelRig& rig, uint64_t seed, int count);

}  // namespace prove
