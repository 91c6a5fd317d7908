// SPDX-License-Identifier: MIT
#include "options/choice_names.h"

#include <algorithm>

#include "core/pack_level.h"

namespace cli {

const std::vector<std::string>& ActorTypeNames() {
  // In the order of the numbers.
  static const std::vector<std::string> names = {"none", "male", "female", "boy", "girl", "teenager", "baby"};
  return names;
}

ts3d::ActorType ActorTypeOfName(const std::string& name) {
  const auto& names = ActorTypeNames();
  return static_cast<ts3d::ActorType>(std::find(names.begin(), names.end(), name) - names.begin());
}

const std::vector<std::string>& ModelUnitNames() {
  static const std::vector<std::string> names = {"m", "cm", "mm", "inch"};
  return names;
}

const std::vector<std::string>& PackLevelNames() {
  static const std::vector<std::string> names = {"fast", "default", "small"};
  return names;
}

int PackLevelOfName(const std::string& name) {
  return name == "fast"    ? ts3d::kFastPackLevel
         : name == "small" ? ts3d::kSmallestPackLevel
                           : ts3d::kDefaultPackLevel;
}

const std::vector<std::string>& TooLargeNames() {
  static const std::vector<std::string> names = {"shrink", "leave-out"};
  return names;
}

textures::TooLarge TooLargeOfName(const std::string& name) {
  return name == "shrink" ? textures::TooLarge::Shrink : textures::TooLarge::LeaveOut;
}

}  // namespace cli
