// SPDX-License-Identifier: MIT
#include "scene/gltf/rig.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "scene/gltf/moving_joints.h"
#include "scene/gltf/rest_pose.h"

namespace scene::gltf {
namespace {

bool IsInvertible(const KFbxXMatrix& m) {
  const double determinant = m.Determinant();
  return determinant != 0.0 && std::isfinite(determinant) && std::isfinite(1.0 / determinant);
}

class RigFinder {
 public:
  RigFinder(const Document& document, const AccessorReader& accessors, Budget& budget,
            const KFbxXMatrix& world)
      : document_(document),
        accessors_(accessors),
        budget_(budget),
        world_(world),
        isShown_(document.nodes.size()),
        fixed_(document.nodes.size()),
        depth_(document.nodes.size()) {}

  Rig Find() {
    for (const uint32_t root : document_.roots) AddTree(root);
    AddJointsElsewhere();
    FindBones();
    DropIdleTrees();
    BindSkins();
    PlaceNodes();
    return std::move(rig_);
  }

 private:
  void AddTree(uint32_t root) {
    std::vector<uint32_t> pending{root};
    while (!pending.empty()) {
      const uint32_t index = pending.back();
      pending.pop_back();
      if (isShown_[index]) continue;
      const Node& node = document_.nodes[index];
      isShown_[index] = true;
      depth_[index] = node.parent == kNone ? 0 : depth_[node.parent] + 1;
      rig_.order.push_back(index);
      for (size_t i = node.children.size(); i-- > 0;) pending.push_back(node.children[i]);
    }
  }

  /// Skeletons of meshes that are shown may stand outside the scene.
  void AddJointsElsewhere() {
    for (size_t i = 0; i < rig_.order.size(); ++i) {
      const Node& node = document_.nodes[rig_.order[i]];
      if (node.mesh == kNone || node.skin == kNone) continue;
      for (const uint32_t joint : document_.skins[node.skin].joints) {
        if (!isShown_[joint]) AddTree(TopOf(joint));
      }
    }
  }

  uint32_t TopOf(uint32_t node) {
    uint32_t top = node;
    while (document_.nodes[top].parent != kNone) {
      top = document_.nodes[top].parent;
      if (top == node) throw Fault("its nodes go round in circles");
      Spend(1);
    }
    return top;
  }

  /// Blender's exporter adds a joint beside the others, to which it binds the points that have no weights.
  bool IsNeutral(uint32_t joint) const {
    const Node& node = document_.nodes[joint];
    return node.name == "neutral_bone" && node.children.empty() && node.mesh == kNone;
  }

  void FindBones() {
    const size_t count = document_.nodes.size();
    rig_.isBone.assign(count, false);
    for (const Skin& skin : document_.skins) {
      for (const uint32_t joint : skin.joints) rig_.isBone[joint] = isShown_[joint] && !IsNeutral(joint);
    }
    for (const auto& [name, node] : document_.avatar.humanoid) rig_.isBone[node] = isShown_[node];
    std::vector<bool> hasBoneBelow(count), hasBoneAbove(count);
    const auto parentOf = [&](uint32_t node) { return document_.nodes[node].parent; };
    for (size_t i = rig_.order.size(); i-- > 0;) {
      const uint32_t node = rig_.order[i];
      if (parentOf(node) != kNone && (rig_.isBone[node] || hasBoneBelow[node]))
        hasBoneBelow[parentOf(node)] = true;
    }
    rig_.boneAbove.assign(count, kNone);
    for (const uint32_t node : rig_.order) {
      const uint32_t above = parentOf(node) == kNone ? kNone : rig_.boneAbove[parentOf(node)];
      if (above != kNone && hasBoneBelow[node]) rig_.isBone[node] = true;
      rig_.boneAbove[node] = rig_.isBone[node] ? node : above;
    }
  }

  /// Behind a skeleton there may be bones that only steer it, and that hold nothing. Of FBX files, too, the first
  /// skeleton is enough where it has all weights.
  void DropIdleTrees() {
    const auto boneAbove = [&](uint32_t node) {
      const uint32_t parent = document_.nodes[node].parent;
      return parent == kNone ? kNone : rig_.boneAbove[parent];
    };
    const auto isTop = [&](uint32_t node) { return rig_.isBone[node] && boneAbove(node) == kNone; };
    const auto first = std::find_if(rig_.order.begin(), rig_.order.end(), isTop);
    if (std::count_if(first, rig_.order.end(), isTop) < 2) return;
    std::vector<bool> isUsed = FindMovingJoints(document_, accessors_, budget_);
    for (const auto& [name, node] : document_.avatar.humanoid) isUsed[node] = true;
    for (size_t i = rig_.order.size(); i-- > 0;) {
      const uint32_t node = rig_.order[i], parent = document_.nodes[node].parent;
      if (document_.nodes[node].mesh != kNone) isUsed[node] = true;
      if (isUsed[node] && parent != kNone) isUsed[parent] = true;
    }
    const auto isUsedTop = [&](uint32_t node) { return isTop(node) && isUsed[node]; };
    if (!isUsed[*first] || std::count_if(first, rig_.order.end(), isUsedTop) > 1) return;
    for (const uint32_t node : rig_.order) {
      const bool isIdle = isTop(node) ? !isUsed[node] : rig_.isBone[node] && !rig_.isBone[boneAbove(node)];
      if (isIdle) rig_.isBone[node] = false;
    }
  }

  std::vector<KFbxXMatrix> ReadInverseBind(const Skin& skin) const {
    std::vector<KFbxXMatrix> matrices(skin.joints.size());
    if (skin.inverseBind == kNone) return matrices;
    const FloatElements stored = accessors_.Floats(skin.inverseBind, 16);
    if (stored.size() < matrices.size()) throw Fault("a skin has fewer inverse bind matrices than joints");
    for (size_t i = 0; i < matrices.size(); ++i) {
      for (size_t k = 0; k < 16; ++k) {
        if (k % 4 != 3) matrices[i].At(k) = static_cast<double>(stored.At(i, k));
      }
    }
    return matrices;
  }

  /// Where `node` stands as far as it is known.
  KFbxXMatrix PlaceOf(uint32_t node) {
    KFbxXMatrix below;
    while (node != kNone && !fixed_[node]) {
      below = document_.nodes[node].local * below;
      node = document_.nodes[node].parent;
      Spend(1);
    }
    return (node == kNone ? world_ : *fixed_[node]) * below;
  }

  /// Skins that nothing wears come last: they say nothing of how the others stand. Of those that are worn the ones
  /// with a bind pose come first, and then those whose joints lie higher, which carry the others along.
  void BindSkins() {
    const size_t count = document_.skins.size();
    rig_.skins.resize(count);
    std::vector<uint32_t> wearers(count, kNone), order(count);
    for (const uint32_t node : rig_.order) {
      const Node& wearer = document_.nodes[node];
      if (wearer.mesh != kNone && wearer.skin != kNone && wearers[wearer.skin] == kNone)
        wearers[wearer.skin] = node;
    }
    std::vector<std::array<uint32_t, 3>> ranks(count);
    for (uint32_t skin = 0; skin < count; ++skin) {
      BoundSkin& bound = rig_.skins[skin];
      bound.inverseBind = ReadInverseBind(document_.skins[skin]);
      bound.place = world_;
      order[skin] = skin;
      ranks[skin] = {wearers[skin] == kNone, !HasBindPose(bound), TopDepthOf(document_.skins[skin])};
    }
    std::stable_sort(order.begin(), order.end(), [&](uint32_t a, uint32_t b) { return ranks[a] < ranks[b]; });
    const RestPose rest(document_, rig_.order, world_);
    for (const uint32_t skin : order) BindSkin(skin, wearers[skin], rest);
  }

  /// Matrices that are all the same, as of skins without any, say nothing of where the joints stood.
  static bool HasBindPose(const BoundSkin& bound) {
    const std::vector<KFbxXMatrix>& all = bound.inverseBind;
    return all.size() == 1 || std::any_of(all.begin(), all.end(), [&](const KFbxXMatrix& matrix) {
             for (size_t i = 0; i < 16; ++i) {
               if (matrix.At(i) != all[0].At(i)) return true;
             }
             return false;
           });
  }

  uint32_t TopDepthOf(const Skin& skin) const {
    uint32_t depth = kNone;
    for (const uint32_t joint : skin.joints) depth = std::min(depth, isShown_[joint] ? depth_[joint] : kNone);
    return depth;
  }

  /// The joint that places the others: one that another skin has placed, else the topmost. As many as there are
  /// joints for none.
  size_t ReferenceOf(const Skin& skin, const BoundSkin& bound) const {
    size_t reference = skin.joints.size();
    for (size_t i = 0; i < skin.joints.size(); ++i) {
      const uint32_t joint = skin.joints[i];
      if (!rig_.isBone[joint] || !IsInvertible(bound.inverseBind[i])) continue;
      const bool isBetter = reference == skin.joints.size() ||
                            (fixed_[joint] && !fixed_[skin.joints[reference]]) ||
                            (fixed_[joint].has_value() == fixed_[skin.joints[reference]].has_value() &&
                             depth_[joint] < depth_[skin.joints[reference]]);
      if (isBetter) reference = i;
    }
    return reference;
  }

  /// Bones that another skin has placed stay there; else the topmost joint stays where it stands, unless the
  /// skeleton is posed: then it stands where the skin's mesh would have it, if that is near.
  void BindSkin(uint32_t index, uint32_t wearer, const RestPose& rest) {
    const Skin& skin = document_.skins[index];
    BoundSkin& bound = rig_.skins[index];
    const size_t reference = ReferenceOf(skin, bound);
    if (reference == skin.joints.size()) return;
    const KFbxXMatrix& inverseBind = bound.inverseBind[reference];
    const KFbxXMatrix now = PlaceOf(skin.joints[reference]);
    KFbxXMatrix place = now * inverseBind;
    const bool isFree = wearer != kNone && !fixed_[skin.joints[reference]];
    const bool hasBindPose = HasBindPose(bound);
    if (isFree && hasBindPose && !rest.IsBindPose(skin.joints, rig_.isBone, bound.inverseBind, reference)) {
      rig_.isPosed = true;
      const KFbxXMatrix upright = PlaceOf(wearer);
      if (rest.IsNear(skin.joints, upright * inverseBind.Inverse(), now)) place = upright;
    }
    if (IsInvertible(place)) bound.place = place;
    for (size_t i = 0; i < skin.joints.size(); ++i) {
      std::optional<KFbxXMatrix>& fixed = fixed_[skin.joints[i]];
      if (fixed || !isShown_[skin.joints[i]]) continue;
      if (!hasBindPose) {
        fixed = PlaceOf(skin.joints[i]);
      } else if (IsInvertible(bound.inverseBind[i])) {
        fixed = bound.place * bound.inverseBind[i].Inverse();
      }
    }
  }

  void PlaceNodes() {
    rig_.places.assign(document_.nodes.size(), world_);
    for (const uint32_t node : rig_.order) {
      const uint32_t parent = document_.nodes[node].parent;
      rig_.places[node] =
          fixed_[node] ? *fixed_[node]
                       : (parent == kNone ? world_ : rig_.places[parent]) * document_.nodes[node].local;
    }
  }

  /// Long chains of nodes with very many skins would be climbed for minutes.
  void Spend(uint64_t steps) {
    constexpr uint64_t kMost = 20'000'000;
    if ((spent_ += steps) > kMost) throw Fault("its skins have too many joints in chains that are too long");
  }

  const Document& document_;
  const AccessorReader& accessors_;
  Budget& budget_;
  const KFbxXMatrix world_;
  std::vector<bool> isShown_;
  std::vector<std::optional<KFbxXMatrix>> fixed_;
  std::vector<uint32_t> depth_;
  uint64_t spent_ = 0;
  Rig rig_;
};

}  // namespace

Rig FindRig(const Document& document, const AccessorReader& accessors, Budget& budget,
            const KFbxXMatrix& world) {
  // Of a node what the document and its writer keep as well.
  constexpr uint64_t kNodeMemory = sizeof(Node) + 512;
  budget.Take(document.nodes.size() * kNodeMemory);
  for (const Skin& skin : document.skins)
    budget.Take(sizeof(BoundSkin) + skin.joints.size() * sizeof(KFbxXMatrix));
  return RigFinder(document, accessors, budget, world).Find();
}

KFbxXMatrix WithoutScale(const KFbxXMatrix& m) {
  // As bones of FBX files lose theirs.
  if (IsInvertible(m)) return {m.GetT(), m.GetR(), {1, 1, 1}};
  KFbxVector4 x{m.At(0), m.At(1), m.At(2)}, y{m.At(4), m.At(5), m.At(6)};
  const auto normalize = [](KFbxVector4& v, const KFbxVector4& otherwise) {
    const double length = v.Length();
    v = length > 0 && std::isfinite(length) ? v * (1.0 / length) : otherwise;
  };
  normalize(x, {1, 0, 0});
  y = y - x * x.DotProduct(y);
  // Any direction beside x where y has none of its own.
  normalize(y, std::abs(x[1]) < 0.5 ? KFbxVector4(0, 1, 0) : KFbxVector4(0, 0, 1));
  y = y - x * x.DotProduct(y);
  normalize(y, {0, 1, 0});
  const KFbxVector4 z = x.CrossProduct(y);
  KFbxXMatrix rigid;
  for (size_t row = 0; row < 3; ++row) {
    rigid.At(row) = x[row];
    rigid.At(4 + row) = y[row];
    rigid.At(8 + row) = z[row];
  }
  rigid.SetT(m.GetT());
  return rigid;
}

}  // namespace scene::gltf
