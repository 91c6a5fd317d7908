// SPDX-License-Identifier: MIT
#pragma once

#include "actor/actor.h"

namespace actor {

/// How many times as large the meshes of `after` are, of those names that both have; 1 where that cannot be told.
double GrowthBetween(const Actor& before, const Actor& after);

/// Skeleton and meshes `times` as large.
Actor Enlarged(const Actor& actor, double times);

}  // namespace actor
