// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/settings.h"
#include "core/status_channel.h"
#include "core/work_files.h"
#include "driver/conversion_result.h"
#include "driver/scene_loader.h"
#include "fbx_to_ts3d.h"
#include "skeleton/model_source.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {

struct ConvertedMesh;

/// First thread identifier of the per-mesh materials, just above the fixed "body" thread.
inline constexpr int32_t kFirstThreadId = 151;

/// Everything one conversion knows about itself. The folders below the driver get the parts that they need. The
/// one process-wide instance lives behind the exported functions, because the final settings of a model build
/// on the values that its conversion left.
struct ConversionJob {
  // The host's settings.
  int32_t meshOptionMode = 0;
  StatusChannel status;  ///< its context is that of the texture callback as well
  FbxToTs3dTextureCallback textureCallback = nullptr;
  std::string boneRenameList;  ///< "old=new" entries separated by "|"
  std::string meshOptionList;  ///< mesh names separated by "|"; "!name" marks a double-sided mesh
  float configScale = 1.0f;
  int32_t nextMeshThreadId = kFirstThreadId;      ///< next mesh file's thread identifier
  int32_t nextMaterialThreadId = kFirstThreadId;  ///< next material line's thread identifier
  int32_t rotationY = 0;                          ///< degrees
  int32_t rotationX = 0;                          ///< degrees

  /// The tool's and the converters'.
  Settings settings;

  /// Told how much of the run is done, from 0 to 1. May throw to end it. Empty for the exports.
  std::function<void(double fraction)> onProgress;

  /// Called with each mesh when its files are written, while its data is there. The exports leave it empty.
  std::function<void(const ConvertedMesh&)> onMesh;

  // One run.
  std::shared_ptr<SkeletonState> skeleton;  ///< null before the first conversion of the process
  int32_t vertexTotal = 0;                  ///< control points of the converted meshes
  int32_t polygonTotal = 0;                 ///< their triangles
  std::vector<std::string> damagedArrays;   ///< see scene::KFbxScene::GetDamagedArrays
  WorkFiles files;
  bool isFbxFile = true;
  ActorType actorType = ActorType::None;
  LoadedScene loaded;
  /// The result of the run should an exception end the step that is running.
  ConversionResult failureCode = ConversionResult::NoFile;
  std::string loadError;           ///< why a model could not be loaded, unless it was printed
  std::string_view failureReason;  ///< why a run ended that an exception ended

  MeshFilter Filter() const { return {settings.exclusionList, actorType}; }
  /// The scene must be loaded.
  ModelSource Model() const { return {loaded.Scene(), settings, status, actorType, isFbxFile}; }
};

}  // namespace ts3d
