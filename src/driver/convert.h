// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "driver/conversion_job.h"

namespace ts3d {

/// What the host asks for, beside the settings in the job.
struct ConversionRequest {
  std::string fbxPath;
  /// Path that the actor type is read from, when it is not `fbxPath`.
  std::string actorPath;
  /// Called when the scene is loaded; what it answers becomes the job's repairs. May be empty.
  /// @param scene  that of `model`
  std::function<RepairSettings(scene::KFbxScene& scene, const ModelSource& model)> chooseRepairs = nullptr;
  /// Called with the scene when its conversion has ended, before
  /// it goes, also when it has no mesh. May be empty.
  std::function<void(const scene::KFbxNode& root)> onConverted = nullptr;
  /// Called when the skeleton is written, before anything reads the job's bone renames. May be empty.
  std::function<void(const SkeletonState& skeleton)> onSkeleton = nullptr;
  /// Actor type, whatever the path says.
  std::optional<ActorType> actorType = std::nullopt;
  /// Loads without console, plug-ins and settings of the process, and tells in `loadError` why that failed.
  bool isQuiet = false;
  /// Keeps why a model cannot be loaded in `loadError` instead of printing it.
  bool keepsLoadError = false;
  /// The model, when it is not in the file `fbxPath`; quiet runs only. Outlives the job's scene.
  std::optional<std::string_view> source = std::nullopt;
};

/// Puts the job's counters to where every conversion starts.
void ResetRun(ConversionJob& job);

/// Frees the scene. The bone tree stays for the final settings; what points into the scene goes.
void ReleaseScene(ConversionJob& job);

/// Converts one model into a package beside it, with the settings that the job holds. Running out of memory,
/// by the system's or by the model's limit, is a result like others; `failureReason` tells it.
ConversionResult RunConversion(ConversionJob& job, const ConversionRequest& request);

}  // namespace ts3d
