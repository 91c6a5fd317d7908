// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/actor_type.h"

namespace ts3d {

/// What decides which meshes and materials are left out.
struct MeshFilter {
  const std::vector<std::string>& exclusionList;  ///< outlives the filter
  ActorType actorType;
};

/// Whether `name` is on the exclusion list.
bool IsExcluded(std::string_view name, const MeshFilter& filter);

/// Whether the mesh or material `name` must be left out: it is on the exclusion list, or it names a head part
/// and the model is a known actor, whose head the product supplies.
bool skipThisMesh(std::string_view name, const MeshFilter& filter);

}  // namespace ts3d
