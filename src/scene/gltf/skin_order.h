// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "scene/gltf/bound_skin.h"
#include "scene/gltf/shown_nodes.h"

namespace scene::gltf {

/// A skin and the first node that wears it, kNone when nothing does.
struct WornSkin {
  uint32_t skin = kNone, wearer = kNone;
};

/// All skins in the order in which they say where joints stood. Those that nothing wears come last: they say nothing
/// of how the others stand. Of those that are worn the ones with a bind pose come first, and then those whose joints
/// lie higher, which carry the others along.
/// @param skins  of each skin of the document its inverse bind matrices
std::vector<WornSkin> OrderSkins(const Document& document, const ShownNodes& shown,
                                 std::span<const BoundSkin> skins);

}  // namespace scene::gltf
