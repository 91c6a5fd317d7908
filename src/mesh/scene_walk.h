// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "core/conversion_job.h"
#include "package/actor_package.h"
#include "scene/model/node.h"

namespace ts3d {

/// Calls `visit` with every mesh node at or below `node`, parents first, children in order.
void ForEachMeshNode(const scene::KFbxNode* node, const std::function<void(const scene::KFbxNode&)>& visit);

/// Converts every mesh at or below `node`, parents first, children in order.
void WalkSceneNode(const scene::KFbxNode* node, ConversionJob& job, PackagedNameSet& packagedNames);

}  // namespace ts3d
