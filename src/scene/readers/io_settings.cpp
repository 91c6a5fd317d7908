// SPDX-License-Identifier: MIT
#include "scene/readers/io_settings.h"

namespace scene {

KFbxIOSettings& KFbxIOSettings::Global() {
  static KFbxIOSettings settings;
  return settings;
}

KString KFbxIOSettings::GetStringProp(std::string_view path, std::string_view otherwise) const {
  const auto found = texts_.find(path);
  return found == texts_.end() ? KString(otherwise) : found->second;
}

bool KFbxIOSettings::GetBoolProp(std::string_view path, bool otherwise) const {
  const auto found = flags_.find(path);
  return found == flags_.end() ? otherwise : found->second;
}

}  // namespace scene
