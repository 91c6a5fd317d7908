// SPDX-License-Identifier: MIT
#include "finish/finish_settings.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "core/similar_names.h"
#include "core/visible_text.h"
#include "driver/final_settings.h"
#include "host/host_paths.h"
#include "host/input_problem.h"
#include "output/exit_codes.h"

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

/// A whole number that fits; the library would cut others short.
int32_t ReadWholeNumber(const Json& value) {
  const double number = value.get<double>();
  if (number != std::floor(number) || std::abs(number) > std::numeric_limits<int32_t>::max()) {
    throw std::runtime_error(value.dump() + " is not a whole number that can be a rotation");
  }
  return static_cast<int32_t>(number);
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
    if (entry.find('\0') != std::string::npos)
      throw std::runtime_error("\"" + ts3d::VisibleText(entry) + "\" holds a zero byte");
    entries.push_back(entry);
  }
  return entries;
}

void AddJson(const Json& file, FinishSettings& settings) {
  CheckKeys(file, "the file", {"scale", "rotation", "renames", "meshes", "switch_on", "switch_off"});
  if (file.contains("scale")) CheckScale(settings.scalePercent.emplace(file.at("scale").get<double>()));
  if (file.contains("rotation")) {
    const Json& rotation = file.at("rotation");
    CheckKeys(rotation, "\"rotation\"", {"x", "y"});
    if (rotation.contains("x")) settings.rotationX = ReadWholeNumber(rotation.at("x"));
    if (rotation.contains("y")) settings.rotationY = ReadWholeNumber(rotation.at("y"));
  }
  for (const std::string& entry : ReadEntries(file, "renames")) settings.boneRenames.push_back(entry);
  for (const std::string& entry : ReadEntries(file, "meshes")) settings.meshes.push_back(entry);
  for (const std::string& entry : ReadEntries(file, "switch_on")) AddSwitchOn(settings, entry);
  for (const std::string& entry : ReadEntries(file, "switch_off")) AddSwitchOff(settings, entry);
}

}  // namespace

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
  std::ifstream file(path);
  try {
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    AddJson(Json::parse(text), settings);
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

int ApplyFinishSettings(const std::string& model, const FinishSettings& settings,
                        const std::optional<std::string>& document, ts3d::ConversionJob& job) {
  if (settings.rotationX) job.rotationX = *settings.rotationX;
  if (settings.rotationY) job.rotationY = *settings.rotationY;
  job.boneRenameList = JoinList(settings.boneRenames);
  job.nextMeshThreadId = job.nextMaterialThreadId = ts3d::kFirstThreadId;
  constexpr double kFullSize = 100.0;
  const ts3d::FinalSettings finalSettings{ConverterPath(model),
                                          static_cast<float>(settings.scalePercent.value_or(kFullSize)),
                                          JoinList(settings.meshes), ts3d::Unnamed::Keep, document};
  return static_cast<int>(ts3d::ApplyFinalSettings(job, finalSettings));
}

}  // namespace cli
