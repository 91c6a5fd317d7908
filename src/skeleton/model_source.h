// SPDX-License-Identifier: MIT
#pragma once

#include "core/mesh_filter.h"
#include "core/settings.h"
#include "core/status_channel.h"
#include "scene/model/scene.h"

namespace ts3d {

/// A loaded model and how it is to be converted. All of it outlives this.
struct ModelSource {
  const scene::KFbxScene& scene;
  const Settings& settings;
  const StatusChannel& status;
  ActorType actorType;
  bool isFbxFile;

  const scene::KFbxNode& Root() const { return *scene.GetRootNode(); }
  MeshFilter Filter() const { return {settings.exclusionList, actorType}; }
};

}  // namespace ts3d
