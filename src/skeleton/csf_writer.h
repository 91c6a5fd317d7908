// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_writer.h"
#include "skeleton/bone_node.h"
#include "skeleton/model_source.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {

/// Writes the skeleton file of `bones`. A tree without bones first gets the bone "dummy_bone" at the origin.
void WriteCsf(BoneTree& bones, ByteWriter& out);

/// Builds the skeleton of `model` and reports what will not import well.
/// @param skeleton  empty
void ExtractSkeleton(const ModelSource& model, SkeletonState& skeleton);

/// Builds the skeleton of `model` and writes "skeleton.csf" into the model's folder.
/// @return false, without a message, when the file cannot be written
bool WriteSkeleton(const ModelSource& model, SkeletonState& skeleton, WorkFiles& files);

}  // namespace ts3d
