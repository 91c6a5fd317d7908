// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"

namespace cli {

/// A setting as a file has it.
struct Setting {
  std::string key;
  std::shared_ptr<const nlohmann::ordered_json> value;  ///< shared with the file's
  std::string section;                                  ///< pattern of the models that it is for; empty: all
};

/// A "fbx2czp.json" file. docs/settings.md describes it.
class SettingsFile {
 public:
  /// @throws std::runtime_error when it cannot be read, or holds what nobody would read
  explicit SettingsFile(const platform::fs::path& path);

  const platform::fs::path& Path() const { return path_; }
  /// What holds for the model: the settings for all models, then those of each section that its name fits, in file
  /// order. Lists add up; of others the last counts.
  std::vector<Setting> SettingsOf(const platform::fs::path& model) const;

 private:
  bool Fits(const std::string& pattern, const platform::fs::path& model) const;

  platform::fs::path path_;
  std::shared_ptr<const nlohmann::ordered_json> json_;
};

/// Whether `text` fits `pattern` in any letter case: "*" stands for any signs but "/", "?" for one.
bool FitsPattern(std::string_view pattern, std::string_view text);

}  // namespace cli
