// SPDX-License-Identifier: MIT
#include "finish/finish_names.h"

#include <algorithm>
#include <map>

#include "core/names.h"
#include "driver/document_lists.h"
#include "rig_check/unmatched_names.h"

namespace cli {
namespace {

/// What `existing` calls `name`; empty when it does not know it.
std::string NameIn(const std::vector<std::string>& existing, std::string_view name) {
  if (std::find(existing.begin(), existing.end(), name) != existing.end()) return std::string(name);
  const auto similar = std::find_if(existing.begin(), existing.end(), [&](const std::string& candidate) {
    return ts3d::EqualsIgnoreCase(candidate, name);
  });
  return similar == existing.end() ? std::string() : *similar;
}

void ResolveEntries(const char* option, const std::vector<std::string>& existing,
                    std::vector<std::string>& entries, std::vector<UnmatchedOption>& unmatched) {
  std::vector<std::string> resolved;
  std::map<std::string, size_t> placeOf;
  for (const std::string& entry : entries) {
    const size_t equals = entry.find('=');
    const std::string name = NameIn(existing, entry.substr(0, equals));
    if (name.empty()) {
      for (ts3d::UnmatchedName& missing : ts3d::FindUnmatchedNames({entry.substr(0, equals)}, existing))
        unmatched.push_back({option, std::move(missing.name), std::move(missing.nearest)});
      continue;
    }
    const auto [place, isNew] = placeOf.emplace(name, resolved.size());
    if (isNew) resolved.emplace_back();
    resolved[place->second] = name + entry.substr(equals);
  }
  entries = std::move(resolved);
}

}  // namespace

std::vector<UnmatchedOption> ResolveNames(FinishSettings& settings, std::string_view document,
                                          const std::vector<std::string>& bones) {
  std::vector<std::string> meshes;
  for (const ts3d::MeshLine& line : ts3d::ReadMeshLines(document)) meshes.emplace_back(line.name);
  std::vector<UnmatchedOption> unmatched;
  ResolveEntries("final mesh", meshes, settings.meshes, unmatched);
  ResolveEntries("final rename", bones, settings.boneRenames, unmatched);
  return unmatched;
}

}  // namespace cli
