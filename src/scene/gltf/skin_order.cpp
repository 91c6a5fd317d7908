// SPDX-License-Identifier: MIT
#include "scene/gltf/skin_order.h"

#include <algorithm>
#include <array>

namespace scene::gltf {
namespace {

std::vector<WornSkin> FindWearers(const Document& document, const ShownNodes& shown) {
  std::vector<WornSkin> worn(document.skins.size());
  for (uint32_t skin = 0; skin < worn.size(); ++skin) worn[skin].skin = skin;
  for (const uint32_t index : shown.order) {
    const Node& node = document.nodes[index];
    if (node.mesh != kNone && node.skin != kNone && worn[node.skin].wearer == kNone)
      worn[node.skin].wearer = index;
  }
  return worn;
}

uint32_t TopDepthOf(const Skin& skin, const ShownNodes& shown) {
  uint32_t depth = kNone;
  for (const uint32_t joint : skin.joints)
    depth = std::min(depth, shown.isShown[joint] ? shown.depth[joint] : kNone);
  return depth;
}

}  // namespace

std::vector<WornSkin> OrderSkins(const Document& document, const ShownNodes& shown,
                                 std::span<const BoundSkin> skins) {
  std::vector<WornSkin> worn = FindWearers(document, shown);
  std::vector<std::array<uint32_t, 3>> ranks;
  ranks.reserve(worn.size());
  for (const auto& [skin, wearer] : worn)
    ranks.push_back({wearer == kNone, !skins[skin].HasBindPose(), TopDepthOf(document.skins[skin], shown)});
  std::stable_sort(worn.begin(), worn.end(),
                   [&](const WornSkin& a, const WornSkin& b) { return ranks[a.skin] < ranks[b.skin]; });
  return worn;
}

}  // namespace scene::gltf
