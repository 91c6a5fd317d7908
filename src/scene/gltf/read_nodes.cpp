// SPDX-License-Identifier: MIT
#include "scene/gltf/read_nodes.h"

#include "scene/gltf/json_value.h"
#include "scene/gltf/read_node_transform.h"

namespace scene::gltf {
namespace {

/// How many there are of what nodes and skins name; asked once, as there may be very many of both.
struct Counts {
  size_t nodes, meshes, skins, accessors;

  explicit Counts(JsonValue root)
      : nodes(root["nodes"].size()),
        meshes(root["meshes"].size()),
        skins(root["skins"].size()),
        accessors(root["accessors"].size()) {}
};

Node ReadNode(JsonValue node, const Counts& counts) {
  Node result;
  result.name = node["name"].Name();
  result.children = ReadIndices(node["children"], counts.nodes, "node");
  result.mesh = node["mesh"].Index(counts.meshes, "mesh");
  result.skin = node["skin"].Index(counts.skins, "skin");
  result.local = ReadNodeTransform(node);
  result.weights = node["weights"].Numbers();
  return result;
}

/// What the scene that is shown names, however often.
std::vector<uint32_t> ReadSceneNodes(JsonValue root) {
  const JsonValue scenes = root["scenes"];
  const uint32_t shown = root["scene"].Index(scenes.size(), "scene");
  return ReadIndices(scenes.At(shown == kNone ? 0 : shown)["nodes"], root["nodes"].size(), "node");
}

}  // namespace

std::vector<Node> ReadNodes(JsonValue root) {
  return ReadList<Node>(root["nodes"],
                        [counts = Counts(root)](JsonValue node) { return ReadNode(node, counts); });
}

std::vector<Skin> ReadSkins(JsonValue root) {
  std::vector<Skin> skins = ReadList<Skin>(root["skins"], [counts = Counts(root)](JsonValue skin) {
    return Skin{ReadIndices(skin["joints"], counts.nodes, "node"),
                skin["inverseBindMatrices"].Index(counts.accessors, "accessor")};
  });
  for (const Skin& skin : skins) {
    if (skin.joints.size() > 0xffff) throw Fault("a skin has too many joints");
  }
  return skins;
}

void FindParents(std::vector<Node>& nodes) {
  for (uint32_t i = 0; i < nodes.size(); ++i) {
    for (const uint32_t child : nodes[i].children) {
      Node& node = nodes[child];
      if (node.parent != kNone) throw Fault("node " + std::to_string(child) + " is a child twice");
      node.parent = i;
    }
  }
}

std::vector<uint32_t> FindRoots(JsonValue root, const std::vector<Node>& nodes) {
  std::vector<uint32_t> roots;
  std::vector<bool> taken(nodes.size());
  for (const uint32_t node : ReadSceneNodes(root)) {
    if (nodes[node].parent == kNone && !taken[node]) roots.push_back(node);
    taken[node] = true;
  }
  const bool isLost = roots.empty();
  for (uint32_t i = 0; isLost && i < nodes.size(); ++i) {
    if (nodes[i].parent == kNone) roots.push_back(i);
  }
  return roots;
}

}  // namespace scene::gltf
