// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "actor/actor.h"

namespace actor {

/// Finds the vertices of one mesh in another one that may have them in another order.
/// @param farthest  that two at the same place are apart
/// @return for each vertex of `a` another one of `b`, the most alike of those at its place; empty where one has none
std::vector<uint32_t> PairVertices(const Mesh& a, const Mesh& b, double farthest);

/// Whether the faces of `a`, with its vertices paired, are those of `b` in any order.
bool HaveSameFaces(const Mesh& a, const Mesh& b, const std::vector<uint32_t>& pairs);

}  // namespace actor
