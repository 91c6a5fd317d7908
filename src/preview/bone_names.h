// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "actor/actor.h"
#include "preview/vectors.h"

namespace preview {

/// Points or ways that are the same but for stray ones.
struct Places {
  std::vector<Vector> places;

  bool IsEmpty() const { return places.empty(); }
  void Add(const Vector& place) { places.push_back(place); }
  /// The median along each axis, so that a stray bone does no harm; {0, 0, 0} without any.
  Vector Middle() const;
};

/// What the names of bones tell about a model, in any letter case.
struct NamedPlaces {
  Places head;    ///< "head", "neck" or "skull" in the name
  Places foot;    ///< "foot", "feet" or "ankle"
  Places toe;     ///< "toe"
  Places toLeft;  ///< from each right bone to the left one: "R_hand" to "L_hand", "RightLeg" to "LeftLeg"
};

NamedPlaces FindNamedPlaces(const actor::Skeleton& skeleton);

}  // namespace preview
