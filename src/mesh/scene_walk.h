// SPDX-License-Identifier: MIT
#pragma once

#include "scene/model/walk_nodes.h"

namespace ts3d {

/// Calls `visit` with every mesh node at or below `top`, parents first, children in order.
template <typename Node, typename Visit>
void ForEachMeshNode(Node& top, const Visit& visit) {
  scene::WalkNodes(top, [&](Node& node) {
    if (node.IsMesh()) visit(node);
    return scene::Below::Visit;
  });
}

}  // namespace ts3d
