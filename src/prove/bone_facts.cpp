// SPDX-License-Identifier: MIT
#include "prove/bone_facts.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "core/names.h"
#include "prove/format_rules.h"
#include "prove/rounding.h"

namespace prove {
namespace {

/// @param shear  of what the frames were taken from: they may be read from it in several ways
bool IsSameFrame(const Affine& stored, const Affine& wanted, double diagonal, double shear = 0.0) {
  const double reach = Distance(wanted.Origin(), {});
  const double room = kPlaceRounding * diagonal + (kRelativeRounding + shear) * reach;
  return stored.TurnedFrom(wanted) <= kTurnRounding + shear &&
         Distance(stored.Origin(), wanted.Origin()) <= room;
}

const RigNode* NodeAt(const ModelRig& rig, int32_t number) {
  return number < 0 ? nullptr : &rig.nodes[static_cast<size_t>(number)];
}

/// How far the transform is from a turn and one scale for all axes.
double Unevenness(const Affine& m) {
  const double scale = std::cbrt(std::abs(m.Determinant()));
  return scale > 0.0 ? m.Stretch(scale) / scale : 1.0;
}

/// No frame is that of a sheared bone. It may keep the direction of an axis, or be the nearest to all; the
/// two are the same for all other bones.
using Reading = Affine (Affine::*)() const;
constexpr Reading kReadings[] = {&Affine::Frame, &Affine::NearestFrame};

class FactFinder {
 public:
  FactFinder(const actor::Skeleton& skeleton, const ModelRig& rig, double diagonal)
      : skeleton_(skeleton), rig_(rig), diagonal_(diagonal), rules_(BonesByRule(skeleton, rig)) {}

  std::vector<BoneFacts> Find() {
    std::vector<BoneFacts> facts;
    for (size_t i = 0; i < skeleton_.bones.size(); ++i) {
      const actor::Bone& bone = skeleton_.bones[i];
      frames_.push_back(StoredFrame(bone.boneSpaceRotation, bone.boneSpaceTranslation).Inverse());
      facts.push_back(bone.parent < 0 ? BoneFacts() : HandDown(facts[static_cast<size_t>(bone.parent)]));
      BoneFacts& fact = facts.back();
      if (rig_.nodeOf[i] < 0) continue;
      const Affine local = StoredFrame(bone.rotation, bone.translation);
      const Affine space = StoredFrame(bone.boneSpaceRotation, bone.boneSpaceTranslation);
      fact.shear += Unevenness(NodeAt(rig_, rig_.nodeOf[i])->stretch);
      // A frame may be read from it in several ways.
      const double shear = fact.shear > kTurnRounding ? 2.0 * fact.shear : 0.0;
      if (!IsInPlace(i, local)) {
        fact.place = IsSameFrame(local, rules_[i].local, diagonal_, shear) ? Why(i) : Cause::WrongBone;
        NotePlace(i, fact);
      }
      if (!HasSpace(i, space)) {
        fact.space = IsSameFrame(space, rules_[i].space, diagonal_, shear) ? WhyHereOrAbove(i, fact)
                                                                           : Cause::WrongBone;
      }
    }
    return facts;
  }

 private:
  static BoneFacts HandDown(BoneFacts above) {
    above.place = above.space = Cause::None;
    ++above.depth;
    return above;
  }

  /// A scaled root is put where it belongs before anything is compared, so that it counts nowhere else.
  static void NotePlace(size_t bone, BoneFacts& fact) {
    if (fact.place == Cause::RootScale) return;
    fact.nearest = fact.place;
    if (fact.chain != Cause::None && (!IsOurs(fact.place) || IsOurs(fact.chain))) return;
    fact.chain = fact.place;
    fact.chainBone = static_cast<int32_t>(bone);
  }

  /// Where the model has the bone; what the converter made stands where it says itself.
  Affine FrameOf(size_t bone, Reading frame) const {
    const RigNode* node = NodeAt(rig_, rig_.nodeOf[bone]);
    return node ? ((rig_.actorTurn * node->bound).*frame)() : frames_[bone];
  }

  bool IsInPlace(size_t bone, const Affine& local) const {
    const int32_t parent = skeleton_.bones[bone].parent;
    return std::any_of(std::begin(kReadings), std::end(kReadings), [&](Reading frame) {
      const Affine above = parent < 0 ? Affine() : FrameOf(static_cast<size_t>(parent), frame);
      return IsSameFrame(local, above.Inverse() * FrameOf(bone, frame), diagonal_);
    });
  }

  bool HasSpace(size_t bone, const Affine& space) const {
    return std::any_of(std::begin(kReadings), std::end(kReadings), [&](Reading frame) {
      return IsSameFrame(space, FrameOf(bone, frame).Inverse(), diagonal_);
    });
  }

  Cause Why(size_t bone) const {
    const RigNode& node = *NodeAt(rig_, rig_.nodeOf[bone]);
    const RigNode* parent = NodeAt(rig_, node.parent);
    const int32_t boneAbove = skeleton_.bones[bone].parent;
    if (node.isLocalEntry || (parent && parent->isLocalEntry)) return Cause::LocalMatrix;
    if (rig_.rulePoses.empty())
      return DependsOnScale(bone) ? (boneAbove < 0 ? Cause::RootScale : ScaleCause(bone)) : Cause::NoBindPose;
    if (!IsBoundByRule(node, rig_)) return Cause::BoneNotBound;
    if (boneAbove < 0) return Cause::RootScale;
    if (!parent || !IsBoundByRule(*parent, rig_)) return Cause::ParentNotBound;
    if (rig_.Find(parent->node) != rig_.nodeOf[static_cast<size_t>(boneAbove)]) return Cause::NodeBetween;
    return ScaleCause(bone);
  }

  /// Whether the node stands now as it was bound, so that only scale can be at fault.
  bool DependsOnScale(size_t bone) const {
    const RigNode& node = *NodeAt(rig_, rig_.nodeOf[bone]);
    return Distance(node.bound.Origin(), node.present.Origin()) <= kPlaceRounding * diagonal_ &&
           node.bound.Frame().TurnedFrom(node.present.Frame()) <= kTurnRounding;
  }

  Cause ScaleCause(size_t bone) const {
    const RigNode* node = NodeAt(rig_, rig_.nodeOf[bone]);
    const RigNode* parent = NodeAt(rig_, node->parent);
    if (parent && (node->bound.Determinant() < 0.0) != (parent->bound.Determinant() < 0.0)) {
      return Cause::MirroredBone;
    }
    const double unevenness = std::max(Unevenness(node->bound), parent ? Unevenness(parent->bound) : 0.0);
    return unevenness <= 1e-5 ? Cause::ScaledBones : Cause::UnevenScale;
  }

  /// Bone space is handed down.
  Cause WhyHereOrAbove(size_t bone, const BoneFacts& fact) const {
    if (fact.nearest != Cause::None) return fact.nearest;
    return skeleton_.bones[bone].parent < 0 ? ScaleCause(bone) : Why(bone);
  }

  const actor::Skeleton& skeleton_;
  const ModelRig& rig_;
  double diagonal_;
  std::vector<RuleBone> rules_;
  std::vector<Affine> frames_;  ///< of the bones as the package has them in model space
};

}  // namespace

std::vector<BoneFacts> FindBoneFacts(const actor::Skeleton& skeleton, const ModelRig& rig, double diagonal) {
  return FactFinder(skeleton, rig, diagonal).Find();
}

NodeFacts FindNodeFacts(const ModelRig& rig) {
  constexpr double kSameScale = 1e-6;
  NodeFacts facts;
  for (size_t i = 0; i < rig.nodes.size(); ++i) {
    const RigNode& node = rig.nodes[i];
    const auto self = static_cast<int32_t>(i);
    const auto next = [&](bool isHere, const std::vector<int32_t>& found) {
      if (isHere || node.parent < 0) return isHere ? self : -1;
      return found[static_cast<size_t>(node.parent)];
    };
    facts.uneven.push_back(next(Unevenness(node.bound) > kSameScale, facts.uneven));
    const Affine since = node.present * node.bound.Inverse();
    const bool isScaled = since.Stretch() > kSameScale || since.Determinant() < 0.0;
    facts.scaledNow.push_back(next(isScaled, facts.scaledNow));
  }
  return facts;
}

Cause WhyNoBone(int32_t number, const actor::Skeleton& skeleton, const ModelRig& rig) {
  const RigNode& node = rig.nodes[static_cast<size_t>(number)];
  if (ts3d::SanitizeMeshName(node.node->GetName()).empty()) return Cause::UnnamedBone;
  if (node.bone != BoneByRule(*node.node, skeleton) && BoneByRule(*node.node, skeleton) >= 0) {
    return node.bone < 0 ? Cause::Namesake : Cause::SameBoneName;
  }
  if (!node.node->IsSkeleton()) return Cause::UnknownLink;
  for (const RigNode* up = NodeAt(rig, node.parent); up; up = NodeAt(rig, up->parent)) {
    if (!up->node->GetNodeAttribute()) return Cause::HiddenBones;
  }
  return Cause::SecondRoot;
}

}  // namespace prove
