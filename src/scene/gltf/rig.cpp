// SPDX-License-Identifier: MIT
#include "scene/gltf/rig.h"

#include "scene/gltf/bind_skins.h"
#include "scene/gltf/check_place.h"
#include "scene/gltf/idle_bones.h"

namespace scene::gltf {
namespace {

void TakeMemory(const Document& document, Budget& budget) {
  // Of a node what the document and its writer keep as well.
  constexpr uint64_t kNodeMemory = sizeof(Node) + 512;
  budget.Take(document.nodes.size() * kNodeMemory);
  for (const Skin& skin : document.skins)
    budget.Take(sizeof(BoundSkin) + skin.joints.size() * sizeof(KFbxXMatrix));
}

}  // namespace

Rig FindRig(const Document& document, const AccessorReader& accessors, Budget& budget,
            const KFbxXMatrix& world) {
  TakeMemory(document, budget);
  ClimbLimit climb;
  ShownNodes shown = FindShownNodes(document, climb);
  Bones bones = FindBones(document, shown);
  DropIdleBones(document, accessors, budget, shown.order, bones);
  NodePlaces places(document, world, climb);
  BoundSkins bound = BindSkins(document, accessors, shown, bones, world, places);
  std::vector<KFbxXMatrix> all = places.All(shown.order);
  for (const uint32_t node : shown.order) {
    if (bones.isBone[node]) CheckPlace(document, node, all[node]);
  }
  return {std::move(shown.order), std::move(bones), std::move(all), std::move(bound.skins), bound.isPosed};
}

}  // namespace scene::gltf
