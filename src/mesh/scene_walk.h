// SPDX-License-Identifier: MIT
#pragma once

#include "core/conversion_job.h"
#include "package/actor_package.h"
#include "scene/model/node.h"

namespace ts3d {

/// Converts every mesh at or below `node`, parents first, children in order.
void WalkSceneNode(const scene::KFbxNode* node, ConversionJob& job, PackagedNameSet& packagedNames);

}  // namespace ts3d
