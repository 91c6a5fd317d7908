// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "translator/node_tree.h"

namespace translator {

/// A line of the stream for each joint that skins give weights and that is no node of the scene, with the number of
/// its points.
std::string TellLostJoints(const aiScene& scene, const NodeTree& tree);

}  // namespace translator
