// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "scene/gltf/accessors.h"
#include "scene/gltf/bones.h"

namespace scene::gltf {

/// Behind a skeleton there may be bones that only steer it, and that hold nothing: they are bones no more. Of FBX
/// files, too, the first skeleton is enough where it has all weights.
/// @param order  the nodes that are shown, parents first
/// @throws Fault
void DropIdleBones(const Document& document, const AccessorReader& accessors, Budget& budget,
                   std::span<const uint32_t> order, Bones& bones);

}  // namespace scene::gltf
