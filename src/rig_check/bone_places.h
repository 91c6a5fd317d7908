// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "scene/math/matrix.h"
#include "scene/model/node.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {

/// How far two places are apart, scales left out.
struct Gap {
  double degrees = 0.0;
  double distance = 0.0;

  /// Whether somebody can see it in a model of that size.
  bool IsVisible(double size) const;
  bool IsWorseThan(const Gap& other, double size) const;
  /// "12 degrees and 3.4 (5 % of the model's size)".
  std::string Text(double size) const;
};

Gap GapBetween(const scene::KFbxXMatrix& a, const scene::KFbxXMatrix& b);

/// Whether somebody can see in a model of that size that a thing is at `a` and not at `b`, scales included.
bool DifferVisibly(const scene::KFbxXMatrix& a, const scene::KFbxXMatrix& b, double size);

/// World transform of `node` in the bind pose, or null.
const scene::KFbxXMatrix* BoundMatrix(const scene::KFbxNode& node, const SkeletonState& skeleton);

/// Where the package has the bone, in the world that the skeleton was taken from: an actor's turn is undone.
scene::KFbxXMatrix StoredPlace(const BoneNode& bone, const SkeletonState& skeleton);

/// `value` in few digits.
std::string ShortNumber(double value);

}  // namespace ts3d
