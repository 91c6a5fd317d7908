// SPDX-License-Identifier: MIT
#include "output/settings_output.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "output/json_parts.h"
#include "output/terminal.h"
#include "settings/apply_settings.h"

namespace cli {
namespace {

using Json = nlohmann::ordered_json;

/// Settings that add to those before them; of others the last counts.
bool AddsUp(const std::string& key) {
  constexpr const char* kLists[] = {"exclude", "renames", "double_sided", "inward",
                                    "outward", "repair",  "textures",     "final"};
  return std::find(std::begin(kLists), std::end(kLists), key) != std::end(kLists);
}

/// Those that hold, with what is overruled left out.
std::vector<Setting> HoldingSettings(const ModelSettings& model) {
  std::vector<Setting> holding;
  if (!model.file) return holding;
  for (Setting& setting : model.file->SettingsOf(model.model)) {
    if (!AddsUp(setting.key))
      std::erase_if(holding, [&](const Setting& earlier) { return earlier.key == setting.key; });
    holding.push_back(std::move(setting));
  }
  return holding;
}

std::string SettingLine(const std::string& key, const std::string& value, const std::string& from) {
  std::string line = "  " + key;
  line.resize(std::max<size_t>(line.size() + 2, 18), ' ');
  line += value;
  line.resize(std::max<size_t>(line.size() + 2, 46), ' ');
  return line + from + "\n";
}

Json ModelAsJson(const ModelSettings& model) {
  Json values = Json::array();
  for (const Setting& setting : HoldingSettings(model)) {
    values.push_back({{"key", setting.key},
                      {"value", setting.value},
                      {"section", setting.section.empty() ? Json() : Json(setting.section)}});
  }
  std::vector<ts3d::Finding> messages;
  if (!model.error.empty())
    messages.push_back({"bad-settings", ts3d::Severity::Fatal, ts3d::Subject::File, {}, model.error, {}});
  return {{"model", model.model},
          {"file", model.file ? Json(model.file->Path().string()) : Json()},
          {"settings", std::move(values)},
          {"messages", FindingsAsJson(messages)}};
}

}  // namespace

std::string SettingsAsText(const ModelSettings& model) {
  std::string text = Printable(model.model) + ": " +
                     (model.file ? "settings of " + Printable(model.file->Path().string())
                                 : "no settings file, all as usual") +
                     "\n";
  const std::vector<Setting> holding = HoldingSettings(model);
  for (const std::string& key : SettingKeys()) {
    bool isSet = false;
    for (const Setting& setting : holding) {
      if (setting.key != key) continue;
      const std::string from =
          setting.section.empty() ? "for all models" : "models \"" + setting.section + "\"";
      const std::string value =
          setting.value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
      text += SettingLine(isSet ? "" : key, Printable(value), Printable(from));
      isSet = true;
    }
    if (!isSet) text += SettingLine(key, DefaultOf(key), "default");
  }
  return text;
}

std::string SettingsAsJson(const std::vector<ModelSettings>& models) {
  constexpr int kVersion = 1;
  Json json = JsonHead("settings", kVersion);
  json["models"] = Json::array();
  for (const ModelSettings& model : models) json["models"].push_back(ModelAsJson(model));
  return JsonText(json);
}

}  // namespace cli
