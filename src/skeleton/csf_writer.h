// SPDX-License-Identifier: MIT
#pragma once

#include "core/conversion_job.h"
#include "core/file_writer.h"
#include "skeleton/bone_node.h"

namespace ts3d {

/// Writes the skeleton file of `bones`. A tree without bones first gets the bone "dummy_bone" at the origin.
void WriteCsf(BoneTree& bones, ByteWriter& out);

/// Builds the job's skeleton from its scene and reports what will not import well.
void ExtractSkeleton(ConversionJob& job);

/// Builds the job's skeleton from its scene and writes "skeleton.csf" into the model's folder.
/// @return false, without a message, when the file cannot be written
bool WriteSkeleton(ConversionJob& job);

}  // namespace ts3d
