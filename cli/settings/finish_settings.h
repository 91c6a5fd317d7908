// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

namespace cli {

/// The final settings of a model, as the command line or a file gives them.
struct FinishSettings {
  std::optional<double> scalePercent;           ///< 100 when absent
  std::optional<int32_t> rotationX, rotationY;  ///< degrees; the conversion's, or 0, when absent
  std::vector<std::string> boneRenames;         ///< "old=new"
  std::vector<std::string> meshes;  ///< "mesh=friendly", with "~" or "`" before a switch's friendly name
};

/// @throws std::runtime_error when the scale, in per cent, becomes none or another one in a document
void CheckScale(double percent);

/// Adds "mesh=friendly" as a mesh that a switch shows: present first, or absent first.
void AddSwitchOn(FinishSettings& settings, const std::string& entry);
void AddSwitchOff(FinishSettings& settings, const std::string& entry);

/// Adds what the JSON file `path` says: "scale", "rotation": {"x", "y"}, and the objects "renames", "meshes",
/// "switch_on" and "switch_off" of old and new names.
/// Other keys are refused.
/// @throws std::runtime_error with a reason for the person at the keyboard
void ReadFinishSettings(const std::string& path, FinishSettings& settings);

/// The same of a part of a file, which is called `name` there.
void AddFinishSettings(const nlohmann::ordered_json& json, const std::string& name, FinishSettings& settings);

/// Lets `settings` say what `later` says as well, and `later` have the last word.
void AddSettings(const FinishSettings& later, FinishSettings& settings);

}  // namespace cli
