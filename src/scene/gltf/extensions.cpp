// SPDX-License-Identifier: MIT
#include "scene/gltf/extensions.h"

#include <algorithm>

#include "scene/gltf/json_value.h"

namespace scene::gltf {
namespace {

/// How the names of extensions begin that are read, or are about what packages do not have.
constexpr std::string_view kHarmless[] = {"EXT_lights_",   "EXT_meshopt_",
                                          "EXT_texture_",  "KHR_animation_",
                                          "KHR_audio",     "KHR_draco_mesh_",
                                          "KHR_lights_",   "KHR_materials_",
                                          "KHR_mesh_quan", "KHR_meshopt_",
                                          "KHR_texture",   "KHR_xmp",
                                          "MSFT_texture",  "VRM"};
constexpr const char* kInstances = "EXT_mesh_gpu_instancing";

bool IsHarmless(std::string_view name) {
  return std::any_of(std::begin(kHarmless), std::end(kHarmless),
                     [&](std::string_view start) { return name.starts_with(start); });
}

bool IsIn(JsonValue names, std::string_view name) {
  for (size_t i = 0; i < names.size(); ++i) {
    if (names.At(i).Text() == name) return true;
  }
  return false;
}

}  // namespace

bool RequiresExtension(JsonValue root, std::string_view extension) {
  return IsIn(root["extensionsRequired"], extension);
}

std::string ListUnreadExtensions(JsonValue root) {
  constexpr size_t kMost = 5, kLongest = 60;
  std::vector<std::string> names;
  const JsonValue required = root["extensionsRequired"];
  for (size_t i = 0; i < required.size() && names.size() < kMost; ++i) {
    const std::string name = required.At(i).Name();
    if (!IsHarmless(name)) names.push_back(name.substr(0, kLongest));
  }
  if (IsIn(root["extensionsUsed"], kInstances) && !RequiresExtension(root, kInstances))
    names.push_back(kInstances);
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "" : ", ") + name;
  return list;
}

}  // namespace scene::gltf
