// SPDX-License-Identifier: MIT
#include "config/bone_name_map.h"

#include "core/names.h"

namespace ts3d {
namespace {

// Trailing blanks and repeated product names are meant: the
// product knows its bones by exactly these names. clang-format off
constexpr std::pair<std::string_view, std::string_view> kBoneNameMap[] = {
    {"headcontrol", "head control"},
    {"L_bicepA", "!left bicep a"},
    {"L_bicepB", "!left bicep b"},
    {"L_clav", "left clavicle"},
    {"L_femur", "!left femur"},
    {"L_femurA", "!left femur a"},
    {"L_femurB", "!left femur b"},
    {"L_foot", "left foot"},
    {"L_foot_control", "!left foot control"},
    {"L_forearm", "!left forearm"},
    {"L_forearmA", "!left forearm a"},
    {"L_forearmB", "!left forearm b"},
    {"L_hand", "!left hand"},
    {"L_indexA", "left index finger a"},
    {"L_indexB", "left index finger b"},
    {"L_indexC", "left index finger c"},
    {"L_indexcontrol", "!left indexcontrol "},
    {"L_legconnect", "!left legconnect"},
    {"L_midfingA", "left middle finger a"},
    {"L_midfingB", "left middle finger b"},
    {"L_midfingC", "left middle finger c"},
    {"L_midfingcontrol", "!left midfingcontrol"},
    {"L_pinkyA", "left pinky a"},
    {"L_pinkyB", "left pinky b"},
    {"L_pinkyC", "left pinky c"},
    {"L_pinkycontrol", "!left pinkycontrol"},
    {"L_ringA", "left ring finger a"},
    {"L_ringB", "left ring finger b"},
    {"L_ringC", "left ring finger c"},
    {"L_ringcontrol", "!left ringcontrol"},
    {"L_shoulder", "!left shoulder"},
    {"L_thumbA", "left thumb a"},
    {"L_thumbB", "left thumb b"},
    {"L_thumbC", "left thumb c"},
    {"L_thumbcontrol", "!left thumbcontrol"},
    {"L_tibia", "!left tibia"},
    {"L_toe", "left toes"},
    {"L_indexcontrol_", "!left indexcontrol "},
    {"R_bicepA", "!right bicep a"},
    {"R_bicepB", "!right bicep b"},
    {"R_clav", "right clavicle"},
    {"R_femur", "!right femur"},
    {"R_femurA", "!right femur a"},
    {"R_femurB", "!right femur b"},
    {"R_foot", "right foot"},
    {"R_foot_control", "!right foot control"},
    {"R_forearm", "!right forearm"},
    {"R_forearmA", "!right forearm a"},
    {"R_forearmB", "!right forearm b"},
    {"R_hand", "!right hand"},
    {"R_indexA", "right index finger a"},
    {"R_indexB", "right index finger b"},
    {"R_indexC", "right index finger c"},
    {"R_indexcontrol", "!right indexcontrol "},
    {"R_legconnect", "!right legconnect"},
    {"R_midfingA", "right middle finger a"},
    {"R_midfingB", "right middle finger b"},
    {"R_midfingC", "right middle finger c"},
    {"R_midfingcontrol", "!right midfingcontrol"},
    {"R_pinkyA", "right pinky a"},
    {"R_pinkyB", "right pinky b"},
    {"R_pinkyC", "right pinky c"},
    {"R_pinkycontrol", "!right pinkycontrol"},
    {"R_ringA", "right ring finger a"},
    {"R_ringB", "right ring finger b"},
    {"R_ringC", "right ring finger c"},
    {"R_ringcontrol", "!right ringcontrol"},
    {"R_shoulder", "!right shoulder"},
    {"R_thumbA", "right thumb a"},
    {"R_thumbB", "right thumb b"},
    {"R_thumbC", "right thumb c"},
    {"R_thumbcontrol", "!right thumbcontrol"},
    {"R_tibia", "!right tibia"},
    {"R_toe", "right toes"},
    {"R_indexcontrol_", "!right indexcontrol "},
    {"lowerneck", "!lower neck"},
    {"lowerspine", "lower spine"},
    {"midneck", "!mid neck"},
    {"midspine", "mid spine"},
    {"Mobo", "!Mobo"},
    {"upperneck", "!upper neck"},
    {"upperspine", "upper spine"},
    {"head", "!head"},
    {"skirt_bone", "skirt adjustment"},
    {"skirt_control", "!skirt control"},
};
// clang-format on

}  // namespace

std::span<const std::pair<std::string_view, std::string_view>> BoneNameMap() { return kBoneNameMap; }

std::string_view FindProductBoneName(std::string_view rigName) {
  for (const auto& [rig, product] : kBoneNameMap) {
    if (EqualsIgnoreCase(rig, rigName)) return product;
  }
  return {};
}

}  // namespace ts3d
