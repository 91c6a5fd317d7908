// SPDX-License-Identifier: MIT
#pragma once

#include "scene/gltf/document.h"

namespace scene::gltf {

class JsonValue;

/// The nodes of a file, without their parents.
/// @throws Fault
std::vector<Node> ReadNodes(JsonValue root);

/// @throws Fault
std::vector<Skin> ReadSkins(JsonValue root);

/// Gives every node that is somebody's child its parent.
/// @throws Fault for one that has two
void FindParents(std::vector<Node>& nodes);

/// The nodes of the scene that is shown; all without any scene, and where it names none that stands at the top. What
/// goes round in circles is left.
/// @param nodes  have their parents
/// @return nodes without a parent, each once
/// @throws Fault
std::vector<uint32_t> FindRoots(JsonValue root, const std::vector<Node>& nodes);

}  // namespace scene::gltf
