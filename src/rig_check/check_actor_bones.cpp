// SPDX-License-Identifier: MIT
#include <algorithm>
#include <set>

#include "config/bone_name_map.h"
#include "core/names.h"
#include "core/similar_names.h"
#include "rig_check/finding_kinds.h"
#include "rig_check/rig_check.h"
#include "scene/model/node.h"

namespace ts3d {
namespace {

/// Bones of clothes, which not every actor wears.
bool IsOptional(std::string_view rigName) { return rigName.starts_with("skirt"); }

/// A bone name without what differs from program to program: namespaces, separators, capitals, and the way
/// the side is written. "mixamorig:LeftHand", "hand.L" and "L_hand" all become "l|hand".
std::string PlainBoneName(std::string_view name) {
  name.remove_prefix(name.rfind(':') + 1);
  std::string plain = LowerCase(name);
  std::string side;
  for (const auto& [word, letter] : {std::pair("left", "l"), std::pair("right", "r")}) {
    const size_t at = plain.find(word);
    if (at != std::string::npos) {
      plain.erase(at, std::string_view(word).size());
      side = letter;
    }
  }
  const auto isSide = [](char c) { return c == 'l' || c == 'r'; };
  const auto isSeparator = [](char c) { return c == '_' || c == '.' || c == '-' || c == ' '; };
  const size_t n = plain.size();
  if (side.empty() && n > 2 && isSide(plain[0]) && isSeparator(plain[1])) {
    side = plain[0];
    plain.erase(0, 2);
  } else if (side.empty() && n > 2 && isSide(plain[n - 1]) && isSeparator(plain[n - 2])) {
    side = plain[n - 1];
    plain.erase(n - 2);
  }
  std::erase_if(plain, isSeparator);
  return side + "|" + plain;
}

/// Plain names of all bones of the rig.
std::set<std::string> PlainBoneNames(const SkeletonState& skeleton) {
  std::set<std::string> names;
  for (const scene::KFbxNode* bone : skeleton.boneNodes) names.insert(PlainBoneName(bone->GetName()));
  return names;
}

/// Where the bone below the "shoulder" is the "arm", as in rigs of Mixamo, the shoulder is the clavicle.
std::string WithoutShoulder(const std::string& plain, const std::set<std::string>& names) {
  const std::string side = plain.substr(0, plain.find('|') + 1);
  return plain == side + "shoulder" && names.contains(side + "arm") ? side + "clav" : plain;
}

struct ProductBone {
  std::string_view rigName;
  std::string plain;
};

/// The one of `missing` that the bone with that plain name may be, or null.
const ProductBone* Nearest(const std::string& plain, const std::vector<ProductBone>& missing) {
  const auto side = [](const std::string& text) { return text.substr(0, text.find('|')); };
  const ProductBone* nearest = nullptr;
  size_t smallest = plain.size() / 4 + 1;
  for (const ProductBone& bone : missing) {
    // Another side is another bone.
    if (side(bone.plain) != side(plain)) continue;
    const size_t distance = EditDistance(plain, bone.plain);
    if (distance >= smallest) continue;
    smallest = distance;
    nearest = &bone;
  }
  return nearest;
}

/// Tells which other bones of the rig the missing ones may be. Compares the names that the model gives,
/// before they are cleaned.
void TellSimilar(RigCheck& check, const std::vector<ProductBone>& missing) {
  constexpr size_t kMostBones = 2000, kLongestName = 64;
  const SkeletonState& skeleton = check.skeleton;
  const std::set<std::string> names = PlainBoneNames(skeleton);
  for (size_t id = 0; id < std::min(skeleton.boneNodes.size(), kMostBones); ++id) {
    const std::string& name = skeleton.boneNodes[id]->GetName();
    if (name.size() > kLongestName || !FindProductBoneName(name).empty()) continue;
    if (const ProductBone* similar = Nearest(WithoutShoulder(PlainBoneName(name), names), missing)) {
      check.report.Add(findings::kSimilarBone, name, {std::string(similar->rigName)});
    }
  }
}

/// The product bones that the rig has, and those of them that are only spelled with other capitals.
std::set<std::string_view> PresentBones(RigCheck& check) {
  const BoneTree& bones = check.skeleton.bones;
  std::set<std::string_view> present;
  for (int32_t id = 0; id < bones.BoneCount(); ++id) {
    const std::string& name = bones.FindById(id)->name;
    for (const auto& [rig, product] : BoneNameMap()) {
      if (!EqualsIgnoreCase(rig, name)) continue;
      present.insert(product);
      if (!bones.FindByName(rig)) check.report.Add(findings::kBoneCase, name, {std::string(rig)});
    }
  }
  return present;
}

}  // namespace

void CheckActorBones(RigCheck& check) {
  if (check.actorType == ActorType::None || !check.skeleton.hasExtractedBones) return;
  const std::set<std::string_view> present = PresentBones(check);
  std::vector<ProductBone> missing;
  for (const auto& [rig, product] : BoneNameMap()) {
    if (present.contains(product) || IsOptional(rig)) continue;
    const bool moved = !product.starts_with('!');
    check.report.Add(moved ? findings::kMissingBones : findings::kMissingControls, std::string(rig));
    missing.push_back({rig, PlainBoneName(rig)});
  }
  TellSimilar(check, missing);
}

}  // namespace ts3d
