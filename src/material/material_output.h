// SPDX-License-Identifier: MIT
#pragma once

#include "core/mesh_filter.h"
#include "package/actor_package.h"

namespace ts3d {

/// Where materials and their pictures go. All of it outlives this.
struct MaterialOutput {
  WorkFiles& files;
  ActorPackage& package;
  const Settings& settings;
  const StatusChannel& status;
  FbxToTs3dTextureCallback textureCallback;  ///< may be null; its context is that of `status`
  MeshFilter filter;
};

}  // namespace ts3d
