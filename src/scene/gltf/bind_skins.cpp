// SPDX-License-Identifier: MIT
#include "scene/gltf/bind_skins.h"

#include "scene/gltf/check_place.h"
#include "scene/gltf/rest_pose.h"
#include "scene/gltf/rigid_transform.h"
#include "scene/gltf/skin_order.h"

namespace scene::gltf {
namespace {

class SkinBinder {
 public:
  SkinBinder(const Document& document, const ShownNodes& shown, const Bones& bones, const RestPose& rest,
             NodePlaces& places)
      : document_(document), shown_(shown), bones_(bones), rest_(rest), places_(places) {}

  /// Bones that another skin has placed stay there; else the topmost joint stays where it stands, unless the
  /// skeleton is posed: then it stands where the skin's mesh would have it, if that is near.
  void Bind(const WornSkin& worn, BoundSkin& bound) {
    const Skin& skin = document_.skins[worn.skin];
    const size_t reference = ReferenceOf(skin, bound);
    if (reference == skin.joints.size()) return;
    const KFbxXMatrix place = PlaceFor(worn, bound, reference);
    if (IsInvertible(place)) bound.place = place;
    FixJoints(skin, bound);
  }

  bool IsPosed() const { return isPosed_; }

 private:
  /// The joint that places the others: one that another skin has placed, else the topmost. As many as there are
  /// joints for none.
  size_t ReferenceOf(const Skin& skin, const BoundSkin& bound) const {
    size_t reference = skin.joints.size();
    for (size_t i = 0; i < skin.joints.size(); ++i) {
      const uint32_t joint = skin.joints[i];
      if (!bones_.isBone[joint] || !IsInvertible(bound.inverseBind[i])) continue;
      if (reference == skin.joints.size() || IsBetter(joint, skin.joints[reference])) reference = i;
    }
    return reference;
  }

  bool IsBetter(uint32_t joint, uint32_t reference) const {
    if (places_.IsFixed(joint) != places_.IsFixed(reference)) return places_.IsFixed(joint);
    return shown_.depth[joint] < shown_.depth[reference];
  }

  KFbxXMatrix PlaceFor(const WornSkin& worn, const BoundSkin& bound, size_t reference) {
    const std::vector<uint32_t>& joints = document_.skins[worn.skin].joints;
    const KFbxXMatrix& inverseBind = bound.inverseBind[reference];
    const KFbxXMatrix now = places_.Of(joints[reference]);
    CheckPlace(document_, joints[reference], now);
    const bool isFree = worn.wearer != kNone && !places_.IsFixed(joints[reference]);
    if (isFree && bound.HasBindPose() &&
        !rest_.IsBindPose(joints, bones_.isBone, bound.inverseBind, reference)) {
      isPosed_ = true;
      const KFbxXMatrix upright = places_.Of(worn.wearer);
      if (rest_.IsNear(joints, upright * inverseBind.Inverse(), now)) return upright;
    }
    return now * inverseBind;
  }

  void FixJoints(const Skin& skin, const BoundSkin& bound) {
    const bool hasBindPose = bound.HasBindPose();
    for (size_t i = 0; i < skin.joints.size(); ++i) {
      const uint32_t joint = skin.joints[i];
      if (places_.IsFixed(joint) || !shown_.isShown[joint]) continue;
      if (!hasBindPose) {
        places_.Fix(joint, places_.Of(joint));
      } else if (IsInvertible(bound.inverseBind[i])) {
        places_.Fix(joint, bound.place * bound.inverseBind[i].Inverse());
      }
    }
  }

  const Document& document_;
  const ShownNodes& shown_;
  const Bones& bones_;
  const RestPose& rest_;
  NodePlaces& places_;
  bool isPosed_ = false;
};

}  // namespace

BoundSkins BindSkins(const Document& document, const AccessorReader& accessors, const ShownNodes& shown,
                     const Bones& bones, const KFbxXMatrix& world, NodePlaces& places) {
  std::vector<BoundSkin> skins;
  skins.reserve(document.skins.size());
  for (const Skin& skin : document.skins) skins.push_back({ReadInverseBind(skin, accessors), world});
  const RestPose rest(document, shown.order, world);
  SkinBinder binder(document, shown, bones, rest, places);
  for (const WornSkin& worn : OrderSkins(document, shown, skins)) binder.Bind(worn, skins[worn.skin]);
  return {std::move(skins), binder.IsPosed()};
}

}  // namespace scene::gltf
