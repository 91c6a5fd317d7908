// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>

#include "actor/actor.h"
#include "preview/vectors.h"

namespace preview {

/// How a model stands in its own space: three axes of it, with side x up = front.
struct Stand {
  Vector side{1, 0, 0};  ///< the model's left
  Vector up{0, 1, 0};
  Vector front{0, 0, 1};
};

/// A package does not tell its up axis, so that it is concluded. It is not the axis from bones called right
/// to those called left ("L_hand", "hand.l", "LeftHand"), and of the others, in this order:
///  1. the one axis on which the model stands: its bounds begin (or end) at 0 there and on no other;
///  2. from bones called foot, toe or ankle to bones called head or neck;
///  3. +Y or, when the bounds are clearly longer there, +Z.
/// The front follows from right and left, else it points from feet to toes, else to +Z of a model that stands
/// along Y and to -Y of others.
/// @param up the axis instead, one of the six of the model's space
Stand FindStand(const actor::Actor& drawable, const std::optional<Vector>& up = std::nullopt);

/// The six axes by their names: "x", "-x" and so on.
const std::map<std::string, Vector>& AxisNames();

}  // namespace preview
