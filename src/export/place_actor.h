// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "actor/actor.h"

namespace actor {

/// Another space for an actor: three axes of its own space, which become x, y and z, and what to multiply
/// lengths by. The axes stand upright on each other and are right-handed.
struct Placement {
  std::array<std::array<double, 3>, 3> axes{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
  double scale = 1.0;
};

/// Brings meshes and bones into that space. No bone gets a scale: its translation has it.
void PlaceActor(const Placement& placement, Actor& actor);

}  // namespace actor
