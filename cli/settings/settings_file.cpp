// SPDX-License-Identifier: MIT
#include "settings/settings_file.h"

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "core/names.h"
#include "settings/apply_settings.h"
#include "settings/json_fields.h"

namespace cli {
namespace fs = platform::fs;
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kModels = "models";

Setting Take(const std::shared_ptr<const Json>& file, const std::string& key, const Json& value,
             const std::string& section = {}) {
  return {key, std::shared_ptr<const Json>(file, &value), section};
}

/// Settings for all models, and sections of settings for some of them.
void Check(const std::shared_ptr<const Json>& file) {
  const Json& json = *file;
  std::vector<std::string> keys = SettingKeys();
  keys.emplace_back(kModels);
  CheckKeys(json, "the file", keys);
  for (const auto& [key, value] : json.items()) {
    if (key != kModels) CheckSetting(Take(file, key, value));
  }
  if (!json.contains(kModels)) return;
  CheckObject(json.at(kModels), "\"models\"");
  for (const auto& [pattern, section] : json.at(kModels).items()) {
    CheckKeys(section, "the section \"" + pattern + "\"", SettingKeys());
    for (const auto& [key, value] : section.items()) CheckSetting(Take(file, key, value, pattern));
  }
}

}  // namespace

bool FitsPattern(std::string_view pattern, std::string_view text) {
  const std::string wanted = ts3d::LowerCase(pattern), name = ts3d::LowerCase(text);
  constexpr size_t kNone = std::string::npos;
  size_t p = 0, star = kNone, taken = 0;  // `taken` is where the text goes on behind what the star stands for
  for (size_t t = 0; t < name.size();) {
    if (p < wanted.size() && wanted[p] == '*') {
      star = p++;
      taken = t;
    } else if (p < wanted.size() && (wanted[p] == name[t] || (wanted[p] == '?' && name[t] != '/'))) {
      ++p;
      ++t;
    } else if (star != kNone && name[taken] != '/') {
      p = star + 1;
      t = ++taken;
    } else {
      return false;
    }
  }
  return wanted.find_first_not_of('*', p) == kNone;
}

SettingsFile::SettingsFile(const fs::path& path) : path_(fs::absolute(path)) {
  std::ifstream file(platform::ForStream(path));
  if (!file) throw std::runtime_error(path.string() + ": cannot be read");
  try {
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    json_ = std::make_shared<const Json>(Json::parse(text));
    Check(json_);
  } catch (const std::exception& error) {
    throw std::runtime_error(path.string() + ": " + error.what());
  }
}

bool SettingsFile::Fits(const std::string& pattern, const fs::path& model) const {
  if (pattern.find('/') == std::string::npos) return FitsPattern(pattern, model.filename().string());
  return FitsPattern(pattern, fs::absolute(model).lexically_relative(path_.parent_path()).generic_string());
}

std::vector<Setting> SettingsFile::SettingsOf(const fs::path& model) const {
  std::vector<Setting> settings;
  for (const auto& [key, value] : json_->items()) {
    if (key != kModels) settings.push_back(Take(json_, key, value));
  }
  if (!json_->contains(kModels)) return settings;
  for (const auto& [pattern, section] : json_->at(kModels).items()) {
    if (!Fits(pattern, model)) continue;
    for (const auto& [key, value] : section.items()) settings.push_back(Take(json_, key, value, pattern));
  }
  return settings;
}

}  // namespace cli
