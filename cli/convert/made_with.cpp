// SPDX-License-Identifier: MIT
#include "convert/made_with.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>

#include "core/json_writer.h"
#include "host/replace_files.h"
#include "prove/sha256.h"
#include "terminal/exit_codes.h"

namespace cli {
namespace fs = platform::fs;
namespace {

/// Options that decide what a package holds. Files with settings have a date.
constexpr std::array kShaping = {
    "--rotation-x",  "--rotation-y",     "--rename",      "--rename-preset",     "--mesh-mode",
    "--mesh",        "--inward",         "--outward",     "--double-sided",      "--exclude",
    "--repair",      "--bind-from-skin", "--open-groups", "--join-roots",        "--attach-rigid",
    "--rigid-bones", "--max-influences", "--max-texture", "--textures",          "--pack",
    "--actor-type",  "--settings",       "--no-settings", "--max-texture-action"};

std::string HashOf(std::string_view bytes) {
  prove::Sha256 hash;
  hash.Add(bytes);
  return hash.Finish();
}

std::string WholeFile(const fs::path& path) {
  std::ifstream file(platform::ForStream(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Empty when no option shapes the package.
std::string HashOfOptions(const ConvertOptions& options) {
  const bool shapes = std::any_of(kShaping.begin(), kShaping.end(),
                                  [&](const char* name) { return options.given.contains(name); });
  if (!shapes) return {};
  ts3d::JsonWriter json(ts3d::JsonWriter::Layout::Compact);
  json.OpenObject();
  json.Member("rotation_x", options.rotationX);
  json.Member("rotation_y", options.rotationY);
  json.Member("renames", options.boneRenames);
  json.Member("preset", options.renamePreset);
  json.Member("mesh_mode", options.meshMode.value_or(-1));
  json.Member("meshes", options.meshes);
  json.Member("inward", options.inwardMeshes);
  json.Member("outward", options.outwardMeshes);
  json.Member("double_sided", options.doubleSidedMeshes);
  json.Member("exclude", options.excludedNames);
  const ts3d::RepairSettings& repairs = options.repairs;
  for (const bool isOn : {options.repairsAsNeeded, repairs.rigidBones, repairs.bindFromSkin,
                          repairs.openGroups, repairs.joinRoots, repairs.attachRigid})
    json.Member("repair", isOn);
  json.Member("max_influences", options.mostInfluences);
  json.Member("max_texture", options.longestTextureSide);
  json.Member("max_texture_action", static_cast<int>(options.tooLargeTextures));
  json.Member("textures", options.textureFolders);
  json.Member("pack", options.packLevel.value_or(-1));
  json.Member("actor_type", options.actorType ? static_cast<int>(*options.actorType) : -1);
  json.Member("settings", options.takesSettings ? options.settingsFile : "none");
  json.CloseObject();
  return HashOf(json.Text());
}

fs::path RecordOf(const ModelTask& task) {
  return task.folder / ("." + task.Package().filename().string() + ".options");
}

/// The end of a record: about another package, one that somebody has made again since, it says nothing.
std::string PackageLine(const fs::path& package) {
  return " options\n" + HashOf(WholeFile(package)) + " package\n";
}

}  // namespace

bool WasMadeWith(const ModelTask& task, const ConvertOptions& options) {
  const std::string record = WholeFile(RecordOf(task)), fingerprint = HashOfOptions(options);
  if (record.empty()) return fingerprint.empty();
  const std::string line = PackageLine(task.Package());
  return fingerprint.empty() ? !record.ends_with(line) : record == fingerprint + line;
}

void RememberOptions(const ModelTask& task, const ConvertOptions& options) {
  const fs::path record = RecordOf(task);
  const std::string fingerprint = HashOfOptions(options);
  std::error_code ignored;
  if (fingerprint.empty()) {
    fs::remove(record, ignored);
    return;
  }
  try {
    ReplaceFiles(task.folder, {{record.filename().string(), fingerprint + PackageLine(task.Package())}});
  } catch (const Failure&) {
    // What is not remembered is made again.
    fs::remove(record, ignored);
  }
}

}  // namespace cli
