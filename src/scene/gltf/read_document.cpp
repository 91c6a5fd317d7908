// SPDX-License-Identifier: MIT
#include <algorithm>

#include "base/plain_text.h"
#include "scene/gltf/document.h"
#include "scene/gltf/extensions.h"
#include "scene/gltf/json_limits.h"
#include "scene/gltf/json_value.h"
#include "scene/gltf/read_accessors.h"
#include "scene/gltf/read_avatar.h"
#include "scene/gltf/read_materials.h"
#include "scene/gltf/read_meshes.h"
#include "scene/gltf/read_nodes.h"
#include "scene/gltf/read_version.h"

namespace scene::gltf {
namespace {

/// @throws Fault
nlohmann::json Parse(std::string_view json) {
  try {
    return nlohmann::json::parse(json);
  } catch (const nlohmann::json::parse_error& error) {
    throw Fault("its JSON is damaged at byte " + std::to_string(error.byte));
  } catch (const nlohmann::json::exception&) {
    throw Fault("its JSON is damaged: a number is too large");
  }
}

/// Of motions no more is read than their names.
std::vector<std::string> ReadMotions(JsonValue animations) {
  constexpr size_t kMostMotions = 1000;
  std::vector<std::string> motions;
  for (size_t i = 0; i < std::min(animations.size(), kMostMotions); ++i) {
    std::string name = animations.At(i)["name"].Name();
    motions.push_back(name.empty() ? "Animation " + std::to_string(i) : std::move(name));
  }
  return motions;
}

/// Each list may name what those before it hold.
Document ReadLists(JsonValue root) {
  Document document;
  document.version = ReadVersion(root["asset"]);
  document.buffers = ReadBuffers(root["buffers"]);
  document.views = ReadViews(root["bufferViews"], document.buffers.size());
  document.accessors = ReadAccessors(root["accessors"], document.views.size());
  document.images = ReadImages(root["images"], document.views.size());
  document.materials = ReadMaterials(root["materials"], root["textures"], document.images.size());
  document.meshes = ReadMeshes(root, document);
  document.nodes = ReadNodes(root);
  document.skins = ReadSkins(root);
  FindParents(document.nodes);
  document.roots = FindRoots(root, document.nodes);
  document.motions = ReadMotions(root["animations"]);
  document.unread = ListUnreadExtensions(root);
  document.avatar = ReadAvatar(root["extensions"], document.nodes.size());
  return document;
}

}  // namespace

Document ReadDocument(std::string_view json, uint64_t fileSize) {
  json = base::WithoutByteOrderMark(json);
  CheckJsonClaims(json, fileSize);
  const nlohmann::json root = Parse(json);
  return ReadLists(JsonValue(root));
}

}  // namespace scene::gltf
