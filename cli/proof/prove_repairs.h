// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <optional>
#include <string>

#include "options/convert_options.h"
#include "platform/file_system.h"
#include "rig_check/choose_repairs.h"

namespace cli {

/// How far a package is from its model, in parts of the model's diagonal.
struct RepairError {
  double vertices = 0.0;  ///< worst of all vertices in all poses
  double mean = 0.0;      ///< of the vertices' worst errors
  double shift = 0.0;     ///< of the whole model, by a scaled root
  double atRest = 0.0;    ///< worst of all vertices in the bind pose

  double Worst() const { return std::max(vertices, shift); }
};

/// The repairs of a model that its proof speaks for.
struct ProvenRepairs {
  ts3d::ChosenRepairs chosen;
  std::optional<RepairError> before, after;  ///< without and with them; none where nothing was proven
};

/// Converts the loaded model `source` with each set of repairs that may help, in memory and without pictures,
/// the smallest sets first, and compares what comes out with the model. The one with the least error wins, of
/// those that leave the surface in the bind pose where it is.
/// @param scene  that of `source`
/// @param model  absolute path of that model
/// @param options  what else it is converted with
ProvenRepairs ChooseRepairsByProof(scene::KFbxScene& scene, const ts3d::ModelSource& source,
                                   const platform::fs::path& model, const ConvertOptions& options);

/// The same for a model that is not loaded yet; none when it cannot be.
std::optional<ProvenRepairs> ProveRepairs(const platform::fs::path& model, const ConvertOptions& options);

/// What the repairs change, in words; empty where nothing was proven or nothing is wrong.
std::string RepairErrors(const ProvenRepairs& repairs);

}  // namespace cli
