// SPDX-License-Identifier: MIT
#include "finish_settings.h"

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "core/similar_names.h"
#include "driver/final_settings.h"
#include "host_paths.h"

namespace cli {
namespace {

using Json = nlohmann::ordered_json;

std::string WithPrefix(const std::string& entry, char prefix) {
  const size_t equals = entry.find('=');
  return entry.substr(0, equals + 1) + prefix + entry.substr(equals + 1);
}

void CheckObject(const Json& value, const std::string& name) {
  if (!value.is_object()) throw std::runtime_error(name + " is not of the form {\"key\": value, ...}");
}

/// Refuses what nobody would read: a mistyped key is a setting that is lost.
void CheckKeys(const Json& value, const std::string& name, const std::vector<std::string>& known) {
  CheckObject(value, name);
  for (const auto& [key, ignored] : value.items()) {
    if (std::find(known.begin(), known.end(), key) != known.end()) continue;
    throw std::runtime_error("the key \"" + key + "\" in " + name + " is not known; the nearest one is " +
                             ts3d::QuotedNames(ts3d::NearestNames(key, known, 1)));
  }
}

/// "old=new" for each member of the object `name`, in file order.
std::vector<std::string> ReadEntries(const Json& file, const char* name) {
  std::vector<std::string> entries;
  if (!file.contains(name)) return entries;
  CheckObject(file.at(name), ts3d::QuotedNames({name}));
  for (const auto& [key, value] : file.at(name).items()) {
    const std::string entry = key + "=" + value.get<std::string>();
    if (key.find('=') != std::string::npos || entry.find('|') != std::string::npos) {
      throw std::runtime_error("\"" + entry + "\" holds a \"=\" or \"|\" too many");
    }
    entries.push_back(entry);
  }
  return entries;
}

void AddJson(const Json& file, FinishSettings& settings) {
  CheckKeys(file, "the file", {"scale", "rotation", "renames", "meshes", "switch_on", "switch_off"});
  settings.scalePercent = file.value("scale", settings.scalePercent);
  if (file.contains("rotation")) {
    const Json& rotation = file.at("rotation");
    CheckKeys(rotation, "\"rotation\"", {"x", "y"});
    if (rotation.contains("x")) settings.rotationX = rotation.at("x").get<int32_t>();
    if (rotation.contains("y")) settings.rotationY = rotation.at("y").get<int32_t>();
  }
  for (const std::string& entry : ReadEntries(file, "renames")) settings.boneRenames.push_back(entry);
  for (const std::string& entry : ReadEntries(file, "meshes")) settings.meshes.push_back(entry);
  for (const std::string& entry : ReadEntries(file, "switch_on")) AddSwitchOn(settings, entry);
  for (const std::string& entry : ReadEntries(file, "switch_off")) AddSwitchOff(settings, entry);
}

}  // namespace

void AddSwitchOn(FinishSettings& settings, const std::string& entry) {
  settings.meshes.push_back(WithPrefix(entry, '~'));
}

void AddSwitchOff(FinishSettings& settings, const std::string& entry) {
  settings.meshes.push_back(WithPrefix(entry, '`'));
}

void ReadFinishSettings(const std::string& path, FinishSettings& settings) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error(path + ": cannot be read");
  try {
    AddJson(Json::parse(file), settings);
  } catch (const std::exception& error) {
    throw std::runtime_error(path + ": " + error.what());
  }
}

int ApplyFinishSettings(const std::string& model, const FinishSettings& settings, ts3d::ConversionJob& job) {
  if (settings.rotationX) job.rotationX = *settings.rotationX;
  if (settings.rotationY) job.rotationY = *settings.rotationY;
  job.boneRenameList = JoinList(settings.boneRenames);
  job.nextMeshThreadId = job.nextMaterialThreadId = ts3d::kFirstThreadId;
  const ts3d::FinalSettings finalSettings{ConverterPath(model), static_cast<float>(settings.scalePercent),
                                          JoinList(settings.meshes)};
  return static_cast<int>(ts3d::ApplyFinalSettings(job, finalSettings));
}

}  // namespace cli
