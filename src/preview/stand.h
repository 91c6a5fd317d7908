// SPDX-License-Identifier: MIT
#pragma once

#include "actor/actor.h"
#include "preview/vectors.h"

namespace preview {

/// How a model stands in its own space: three axes of it, with side x up = front.
struct Stand {
  Vector side{1, 0, 0};  ///< the model's left
  Vector up{0, 1, 0};
  Vector front{0, 0, 1};
};

/// A package does not tell its up axis, so that it is concluded, in this order:
///  1. the one axis on which the model stands: its bounds begin (or end) at 0 there and on no other;
///  2. from bones called foot, toe or ankle to bones called head or neck;
///  3. the longest side of its bounds, but not the one from right to left bones; upwards is positive.
/// The front follows from bones called left and right ("L_hand", "hand.l", "LeftHand"), else it points from
/// feet to toes, else to +Z of a model that stands along Y and to -Y of others.
Stand FindStand(const actor::Actor& drawable);

}  // namespace preview
