// SPDX-License-Identifier: MIT
#include "config/control_bones.h"

#include <string_view>

namespace ts3d {
namespace {

struct ControlBoneBlock {
  std::string_view firstBone;
  std::string_view secondBone;
  std::string_view lines;
};

// The femur blocks hang on the forearm's twist bone of the same side: rigs without it have no femur twist
// either.
// clang-format off
constexpr ControlBoneBlock kBlocks[] = {
    {"lowerneck", "midneck",
     "<control_bone name=\"neck\" base=\"!upper neck\">\n"
     "   <twist_bone name=\"!lower neck\"/>\n"
     "   <twist_bone name=\"!mid neck\"/>\n"
     "</control_bone>\n"},
    {"R_forearmA", "R_forearmB",
     "<control_bone name=\"right forearm\" base=\"!right forearm\">\n"
     "   <twist_bone name=\"!right forearm a\"/>\n"
     "   <twist_bone name=\"!right forearm b\"/>\n"
     "</control_bone>\n"},
    {"R_hand", "R_forearm",
     "<inverse_bone name=\"right hand\" base=\"!right hand\" control=\"right forearm\"/>\n"},
    {"R_bicepA", "R_bicepB",
     "<control_bone name=\"right upper arm\" base=\"!right shoulder\">\n"
     "   <twist_bone name=\"!right bicep a\"/>\n"
     "   <twist_bone name=\"!right bicep b\"/>\n"
     "</control_bone>\n"},
    {"L_forearmA", "L_forearmB",
     "<control_bone name=\"left forearm\" base=\"!left forearm\">\n"
     "   <twist_bone name=\"!left forearm a\"/>\n"
     "   <twist_bone name=\"!left forearm b\"/>\n"
     "</control_bone>\n"},
    {"L_hand", "L_forearm",
     "<inverse_bone name=\"left hand\" base=\"!left hand\" control=\"left forearm\"/>\n"},
    {"L_bicepA", "L_bicepB",
     "<control_bone name=\"left upper arm\" base=\"!left shoulder\">\n"
     "   <twist_bone name=\"!left bicep a\"/>\n"
     "   <twist_bone name=\"!left bicep b\"/>\n"
     "</control_bone>\n"},
    {"R_femurB", "R_forearmB",
     "<control_bone name=\"right femur\" base=\"!right femur\">\n"
     "   <twist_bone name=\"!right femur a\"/>\n"
     "   <twist_bone name=\"!right femur b\"/>\n"
     "</control_bone>\n"},
    {"R_tibia", "R_femur",
     "<inverse_bone name=\"right tibia\" base=\"!right tibia\" control=\"right femur\"/>\n"},
    {"L_femurB", "L_forearmB",
     "<control_bone name=\"left femur\" base=\"!left femur\">\n"
     "   <twist_bone name=\"!left femur a\"/>\n"
     "   <twist_bone name=\"!left femur b\"/>\n"
     "</control_bone>\n"},
    {"L_tibia", "L_femur",
     "<inverse_bone name=\"left tibia\" base=\"!left tibia\" control=\"left femur\"/>\n"},
};
// clang-format on

}  // namespace

std::string ControlBoneBlocks(const BoneTree& bones) {
  std::string blocks;
  for (const ControlBoneBlock& block : kBlocks) {
    if (bones.FindByName(block.firstBone) && bones.FindByName(block.secondBone)) blocks += block.lines;
  }
  return blocks;
}

}  // namespace ts3d
