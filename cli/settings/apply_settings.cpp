// SPDX-License-Identifier: MIT
#include "settings/apply_settings.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "core/names.h"
#include "options/choice_names.h"
#include "options/rename_preset.h"
#include "settings/json_fields.h"
#include "textures/image_reader.h"

namespace cli {
namespace fs = platform::fs;
namespace {

struct Place {
  const Setting& setting;
  const fs::path& folder;
  ModelOptions& target;

  const nlohmann::ordered_json& Value() const { return *setting.value; }
  const std::string& Key() const { return setting.key; }
  bool IsGiven(const char* option) const { return target.options.given.contains(option); }
  void AddTo(std::vector<std::string>& list) const {
    for (std::string& name : ReadTexts(Value(), Key())) list.push_back(std::move(name));
  }
};

/// A bone that the command line renames keeps the name from there.
void AddRenames(const Place& place) {
  std::vector<std::string>& renames = place.target.options.boneRenames;
  const auto bone = [](const std::string& entry) { return entry.substr(0, entry.find('=') + 1); };
  for (const std::string& entry : ReadEntries(place.Value(), place.Key())) {
    const bool known = std::any_of(renames.begin(), renames.end(),
                                   [&](const std::string& other) { return bone(other) == bone(entry); });
    if (!known) renames.push_back(entry);
  }
}

void SetRepairs(const Place& place) {
  ConvertOptions& options = place.target.options;
  if (place.Value().is_boolean()) {
    if (!place.IsGiven("--repair")) options.repairsAsNeeded = place.Value().get<bool>();
    return;
  }
  ts3d::RepairSettings& repairs = options.repairs;
  const std::map<std::string, bool*> switches = {{"bind-from-skin", &repairs.bindFromSkin},
                                                 {"open-groups", &repairs.openGroups},
                                                 {"join-roots", &repairs.joinRoots},
                                                 {"attach-rigid", &repairs.attachRigid},
                                                 {"rigid-bones", &repairs.rigidBones}};
  std::vector<std::string> names;
  names.reserve(switches.size());
  for (const auto& [name, on] : switches) names.push_back(name);
  if (!place.Value().is_array())
    throw std::runtime_error("\"repair\" is neither true, false nor a list of repairs");
  for (const auto& repair : place.Value()) *switches.at(ReadChoice(repair, "repair", names)) = true;
}

void SetPreset(const Place& place) {
  std::vector<std::string> names;
  for (const auto& [name, text] : RenamePresetTexts()) names.push_back(name);
  const std::string preset = ReadChoice(place.Value(), place.Key(), names);
  if (!place.IsGiven("--rename-preset")) place.target.options.renamePreset = preset;
}

void SetActorType(const Place& place) {
  const std::string name = ReadChoice(place.Value(), place.Key(), ActorTypeNames());
  if (!place.IsGiven("--actor-type")) place.target.options.actorType = ActorTypeOfName(name);
}

void SetUnit(const Place& place) {
  const std::string unit = ReadChoice(place.Value(), place.Key(), ModelUnitNames());
  if (!place.IsGiven("--unit")) place.target.options.modelUnit = unit;
}

void SetRotation(const Place& place) {
  ConvertOptions& options = place.target.options;
  CheckKeys(place.Value(), "\"rotation\"", {"x", "y"});
  const auto take = [&](const char* key, const char* option, int32_t& angle) {
    if (!place.Value().contains(key)) return;
    const int32_t value = ReadWholeNumber(place.Value().at(key), "rotation");
    if (!place.IsGiven(option)) angle = value;
  };
  take("x", "--rotation-x", options.rotationX);
  take("y", "--rotation-y", options.rotationY);
}

void AddTextures(const Place& place) {
  for (const std::string& folder : ReadTexts(place.Value(), place.Key())) {
    const fs::path path = (place.folder / folder).lexically_normal();
    std::error_code unknown;
    // Without a place, only the values are looked at.
    if (!place.folder.empty() && !fs::is_directory(path, unknown))
      throw std::runtime_error("\"textures\" names a folder that does not exist: " + path.string());
    place.target.options.textureFolders.push_back(path.string());
  }
}

void SetMaxTexture(const Place& place) {
  const int32_t pixels = ReadWholeNumber(place.Value(), place.Key());
  if (pixels < 1 || pixels > textures::kLargestSide)
    throw std::runtime_error("\"max_texture\" is not from 1 to " + std::to_string(textures::kLargestSide));
  if (!place.IsGiven("--max-texture")) place.target.options.longestTextureSide = pixels;
}

void SetMaxInfluences(const Place& place) {
  const int32_t most = ReadWholeNumber(place.Value(), place.Key());
  if (most < 1 || most > kMostInfluences)
    throw std::runtime_error("\"max_influences\" is not from 1 to " + std::to_string(kMostInfluences));
  if (!place.IsGiven("--max-influences")) place.target.options.mostInfluences = most;
}

void SetMaxTextureAction(const Place& place) {
  const std::string name = ReadChoice(place.Value(), place.Key(), TooLargeNames());
  if (!place.IsGiven("--max-texture-action")) place.target.options.tooLargeTextures = TooLargeOfName(name);
}

void SetPack(const Place& place) {
  const std::string level = ReadChoice(place.Value(), place.Key(), PackLevelNames());
  if (!place.IsGiven("--pack")) place.target.options.packLevel = PackLevelOfName(level);
}

void AddFinal(const Place& place) {
  FinishSettings later;
  AddFinishSettings(place.Value(), "\"final\"", later);
  if (!place.target.finish) place.target.finish.emplace();
  AddSettings(later, *place.target.finish);
}

struct Key {
  const char* name;
  const char* byDefault;
  void (*apply)(const Place& place);
};

constexpr Key kKeys[] = {
    {"exclude", "nothing", [](const Place& place) { place.AddTo(place.target.options.excludedNames); }},
    {"renames", "none", AddRenames},
    {"rename_preset", "none", SetPreset},
    {"double_sided", "no mesh",
     [](const Place& place) { place.AddTo(place.target.options.doubleSidedMeshes); }},
    {"inward", "no mesh", [](const Place& place) { place.AddTo(place.target.options.inwardMeshes); }},
    {"outward", "no mesh", [](const Place& place) { place.AddTo(place.target.options.outwardMeshes); }},
    {"repair", "false", SetRepairs},
    {"max_influences", "all", SetMaxInfluences},
    {"actor_type", "as the path says", SetActorType},
    {"unit", "m, of models other than FBX", SetUnit},
    {"rotation", "x 0, y 0", SetRotation},
    {"textures", "the usual folders", AddTextures},
    {"max_texture", "8192", SetMaxTexture},
    {"max_texture_action", "shrink", SetMaxTextureAction},
    {"pack", "default", SetPack},
    {"final", "none", AddFinal}};

}  // namespace

const std::vector<std::string>& SettingKeys() {
  static const std::vector<std::string> keys = [] {
    std::vector<std::string> names;
    for (const Key& key : kKeys) names.emplace_back(key.name);
    return names;
  }();
  return keys;
}

std::string DefaultOf(const std::string& key) {
  for (const Key& known : kKeys) {
    if (key == known.name) return known.byDefault;
  }
  return {};
}

void ApplySetting(const Setting& setting, const fs::path& folder, ModelOptions& target) {
  for (const Key& key : kKeys) {
    if (setting.key == key.name) key.apply({setting, folder, target});
  }
}

void CheckSetting(const Setting& setting) {
  ModelOptions nothing;
  ApplySetting(setting, {}, nothing);
}

}  // namespace cli
