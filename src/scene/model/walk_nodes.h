// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "scene/model/node.h"

namespace scene {

enum class Below { Visit, Skip };

/// Calls `visit` for `top` and the nodes below it, parents first, children
/// in order; its answer says whether to go on below the node. With a list of
/// its own instead of recursion: trees may be deeper than the call stack.
template <typename Node, typename Visit>
void WalkNodes(Node& top, const Visit& visit) {
  std::vector<Node*> pending{&top};
  while (!pending.empty()) {
    Node& node = *pending.back();
    pending.pop_back();
    if (visit(node) == Below::Skip) continue;
    for (int i = node.GetChildCount(); i-- > 0;) pending.push_back(node.GetChild(i));
  }
}

}  // namespace scene
