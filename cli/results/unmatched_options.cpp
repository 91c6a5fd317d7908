// SPDX-License-Identifier: MIT
#include "results/unmatched_options.h"

#include <algorithm>

#include "core/similar_names.h"
#include "results/result_messages.h"

namespace cli {
namespace {

/// What `result` says of a name that another model has not; null when this one has it.
const UnmatchedOption* Find(const ModelResult& result, const UnmatchedOption& wanted) {
  const auto& all = result.unmatchedOptions;
  const auto found = std::find_if(all.begin(), all.end(), [&](const UnmatchedOption& entry) {
    return entry.option == wanted.option && entry.name == wanted.name;
  });
  return found == all.end() ? nullptr : &*found;
}

}  // namespace

std::string DescribeUnmatched(const UnmatchedOption& unmatched, const std::vector<std::string>& names) {
  const std::string things = unmatched.option.ends_with("rename") ? "bone"
                             : unmatched.option.ends_with("mesh") || unmatched.option.ends_with("ward")
                                 ? "mesh"
                                 : "mesh or material";
  const std::vector<std::string> nearest = ts3d::NearestNames(unmatched.name, names);
  return unmatched.option + " " + unmatched.name + ": no " + things + " has this name" +
         (nearest.empty() ? "" : "; the nearest names are " + ts3d::QuotedNames(nearest));
}

bool NamesSomething(const ConvertOptions& options) {
  return !(options.excludedNames.empty() && options.meshes.empty() && options.inwardMeshes.empty() &&
           options.outwardMeshes.empty() && options.doubleSidedMeshes.empty() && options.boneRenames.empty());
}

std::vector<UnmatchedOption> FindUnmatchedOptions(const ConvertOptions& options,
                                                  const ts3d::OptionTargets& targets) {
  std::vector<UnmatchedOption> unmatched;
  const auto add = [&](const char* option, const std::vector<std::string>& asked,
                       const std::vector<std::string>& existing,
                       ts3d::LetterCase letterCase = ts3d::LetterCase::Any) {
    for (ts3d::UnmatchedName& entry : ts3d::FindUnmatchedNames(asked, existing, letterCase)) {
      unmatched.push_back({option, std::move(entry.name), std::move(entry.nearest)});
    }
  };
  add("--exclude", options.excludedNames, targets.outputs);
  add("--mesh", options.meshes, targets.meshes);
  add("--inward", options.inwardMeshes, targets.meshes);
  add("--outward", options.outwardMeshes, targets.meshes);
  add("--double-sided", options.doubleSidedMeshes, targets.outputs);
  std::vector<std::string> renamed;
  for (const std::string& rename : options.boneRenames) renamed.push_back(rename.substr(0, rename.find('=')));
  add("--rename", renamed, targets.bones, ts3d::LetterCase::Exact);
  return unmatched;
}

std::vector<ts3d::Finding> FindNamesOfNoModel(const std::vector<ModelResult>& results) {
  std::vector<ts3d::Finding> warnings;
  std::vector<const ModelResult*> converted;
  for (const ModelResult& result : results) {
    if (result.code == 0) converted.push_back(&result);
  }
  if (converted.empty()) return warnings;
  for (const UnmatchedOption& unmatched : converted.front()->unmatchedOptions) {
    std::vector<std::string> names;
    const bool nowhere = std::all_of(converted.begin(), converted.end(), [&](const ModelResult* result) {
      const UnmatchedOption* entry = Find(*result, unmatched);
      if (entry) names.insert(names.end(), entry->nearest.begin(), entry->nearest.end());
      return entry != nullptr;
    });
    if (!nowhere) continue;
    warnings.push_back(
        UnmatchedFinding({unmatched.option, unmatched.name, std::move(names)}, ts3d::Severity::Warning));
  }
  return warnings;
}

}  // namespace cli
