// SPDX-License-Identifier: MIT
#include "options/mesh_options.h"

#include <stdexcept>

#include "core/names.h"
#include "host/host_paths.h"

namespace cli {
namespace {

constexpr int kAllOthersInward = 1, kListedInward = 2;

constexpr const char* kWayOut = "use --inward NAME to turn the normals of one mesh inward";

void Append(const std::vector<std::string>& names, const char* prefix, std::vector<std::string>& list) {
  for (const std::string& name : names) list.push_back(prefix + name);
}

}  // namespace

void CheckMeshOptions(const ConvertOptions& options) {
  if (!options.meshes.empty() && !options.meshMode) {
    throw std::runtime_error("--mesh " + options.meshes.front() +
                             " does not say what to do with the mesh: that takes --mesh-mode, 2 for inward "
                             "normals of the meshes named or 1 for those of all others; or " +
                             kWayOut);
  }
  if (options.meshes.empty() && options.meshMode == kListedInward) {
    throw std::runtime_error(
        std::string("--mesh-mode 2 is about the meshes of --mesh, and there are none; ") + kWayOut);
  }
  for (const std::string& name : options.inwardMeshes) {
    for (const std::string& other : options.outwardMeshes) {
      if (ts3d::EqualsIgnoreCase(name, other))
        throw std::runtime_error("--inward " + name + " and --outward " + other + " contradict each other");
    }
  }
}

void SetMeshOptions(const ConvertOptions& options, ts3d::ConversionJob& job) {
  const bool allInward = options.meshes.empty() && options.meshMode == kAllOthersInward;
  std::vector<std::string> list = options.meshes;
  if (options.meshes.empty()) {
    // A list without names of this kind, as of double-sided meshes only, turns all normals inward in mode 0.
    job.meshOptionMode = allInward ? kAllOthersInward : kListedInward;
    Append(allInward ? options.outwardMeshes : options.inwardMeshes, "", list);
  } else {
    job.meshOptionMode = options.meshMode.value_or(0);
  }
  Append(options.doubleSidedMeshes, "!", list);
  job.meshOptionList = JoinList(list);
}

}  // namespace cli
