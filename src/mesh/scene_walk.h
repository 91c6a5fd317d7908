// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "scene/model/node.h"

namespace ts3d {

/// Calls `visit` with every mesh node at or below `node`, parents first, children in order.
void ForEachMeshNode(const scene::KFbxNode* node, const std::function<void(const scene::KFbxNode&)>& visit);

}  // namespace ts3d
