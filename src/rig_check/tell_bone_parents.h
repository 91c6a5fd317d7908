// SPDX-License-Identifier: MIT
#pragma once

#include "rig_check/skin_gaps.h"

namespace ts3d {

/// Tells of bones that are in the wrong place for what stands above them, and takes them, and what they take
/// along, out of `gaps`.
/// @param size  the model's
void TellBoneParents(const ModelSource& model, SkeletonState& skeleton, double size, SkinGaps& gaps,
                     RigReport& report);

}  // namespace ts3d
