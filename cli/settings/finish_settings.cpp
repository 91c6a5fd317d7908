// SPDX-License-Identifier: MIT
#include "settings/finish_settings.h"

#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "host/input_problem.h"
#include "settings/json_fields.h"
#include "terminal/exit_codes.h"

namespace cli {
namespace {

using Json = nlohmann::ordered_json;

std::string WithPrefix(const std::string& entry, char prefix) {
  const size_t equals = entry.find('=');
  return entry.substr(0, equals + 1) + prefix + entry.substr(equals + 1);
}

}  // namespace

void AddFinishSettings(const Json& json, const std::string& name, FinishSettings& settings) {
  CheckKeys(json, name, {"scale", "rotation", "renames", "meshes", "switch_on", "switch_off"});
  if (json.contains("scale"))
    CheckScale(settings.scalePercent.emplace(ReadNumber(json.at("scale"), "scale")));
  if (json.contains("rotation")) {
    const Json& rotation = json.at("rotation");
    CheckKeys(rotation, "\"rotation\"", {"x", "y"});
    if (rotation.contains("x")) settings.rotationX = ReadWholeNumber(rotation.at("x"), "rotation");
    if (rotation.contains("y")) settings.rotationY = ReadWholeNumber(rotation.at("y"), "rotation");
  }
  const auto entries = [&](const char* key) {
    return json.contains(key) ? ReadEntries(json.at(key), key) : std::vector<std::string>();
  };
  for (const std::string& entry : entries("renames")) settings.boneRenames.push_back(entry);
  for (const std::string& entry : entries("meshes")) settings.meshes.push_back(entry);
  for (const std::string& entry : entries("switch_on")) AddSwitchOn(settings, entry);
  for (const std::string& entry : entries("switch_off")) AddSwitchOff(settings, entry);
}

void CheckScale(double percent) {
  // Documents have six decimals.
  constexpr double kLeast = 1e-4, kMost = std::numeric_limits<float>::max();
  if (std::abs(percent) <= kMost && (percent <= 0 || percent >= kLeast)) return;
  throw std::runtime_error("the scale is not a number that a document can hold");
}

void AddSwitchOn(FinishSettings& settings, const std::string& entry) {
  settings.meshes.push_back(WithPrefix(entry, '~'));
}

void AddSwitchOff(FinishSettings& settings, const std::string& entry) {
  settings.meshes.push_back(WithPrefix(entry, '`'));
}

void ReadFinishSettings(const std::string& path, FinishSettings& settings) {
  if (const auto problem = FindInputProblem(path))
    throw Failure(problem->exitStatus, path + ": " + problem->text);
  std::ifstream file(platform::ForStream(path));
  try {
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    AddFinishSettings(Json::parse(text), "the file", settings);
  } catch (const std::exception& error) {
    throw std::runtime_error(path + ": " + error.what());
  }
}

void AddSettings(const FinishSettings& later, FinishSettings& settings) {
  if (later.scalePercent) settings.scalePercent = later.scalePercent;
  if (later.rotationX) settings.rotationX = later.rotationX;
  if (later.rotationY) settings.rotationY = later.rotationY;
  const auto append = [](const std::vector<std::string>& from, std::vector<std::string>& to) {
    to.insert(to.end(), from.begin(), from.end());
  };
  append(later.boneRenames, settings.boneRenames);
  append(later.meshes, settings.meshes);
}

}  // namespace cli
