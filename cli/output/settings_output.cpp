// SPDX-License-Identifier: MIT
#include "output/settings_output.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "core/json_output.h"
#include "settings/apply_settings.h"
#include "terminal/terminal.h"

namespace cli {
namespace {

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

std::string ValueText(const Setting& setting) {
  return setting.value->dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

void WriteModel(ts3d::JsonWriter& json, const ModelSettings& model) {
  json.OpenObject();
  json.Member("model", model.model);
  json.Member("file", model.file ? std::optional(model.file->Path().string()) : std::nullopt);
  json.OpenArray("settings");
  for (const Setting& setting : HoldingSettings(model)) {
    json.OpenObject();
    json.Member("key", setting.key);
    json.Key("value");
    json.Raw(ValueText(setting));
    json.Member("section", setting.section.empty() ? std::nullopt : std::optional(setting.section));
    json.CloseObject();
  }
  json.CloseArray();
  std::vector<ts3d::Finding> messages;
  if (!model.error.empty())
    messages.push_back({"bad-settings", ts3d::Severity::Error, ts3d::Subject::File, {}, model.error, {}});
  json.Key("messages");
  ts3d::WriteFindings(json, messages);
  json.CloseObject();
}

}  // namespace

std::string SettingsAsText(const ModelSettings& model) {
  std::string text = Printable(model.model) + ": " +
                     (model.file ? "settings of " + Printable(model.file->Path().string())
                                 : "no settings file, so the defaults hold") +
                     "\n";
  const std::vector<Setting> holding = HoldingSettings(model);
  for (const std::string& key : SettingKeys()) {
    bool isSet = false;
    for (const Setting& setting : holding) {
      if (setting.key != key) continue;
      const std::string from =
          setting.section.empty() ? "for all models" : "models \"" + setting.section + "\"";
      text += SettingLine(isSet ? "" : key, Printable(ValueText(setting)), Printable(from));
      isSet = true;
    }
    if (!isSet) text += SettingLine(key, DefaultOf(key), "default");
  }
  return text;
}

std::string SettingsAsJson(const std::vector<ModelSettings>& models) {
  constexpr int kVersion = 1;
  ts3d::JsonWriter json;
  json.OpenObject();
  ts3d::WriteJsonHead(json, "settings", kVersion);
  json.OpenArray("models");
  for (const ModelSettings& model : models) WriteModel(json, model);
  json.CloseArray();
  json.CloseObject();
  return ts3d::JsonText(json.Text());
}

}  // namespace cli
