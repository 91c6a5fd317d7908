// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "actor/load_actor.h"
#include "prove/prove.h"
#include "support/character.h"
#include "support/load_scene.h"
#include "support/test_host.h"

namespace support {

/// What a test may change in the model before it is converted.
struct ArmRig {
  FbxRecords root{At(0, 1, 0)}, upper{At(2, 0, 0)}, lower{At(3, 0, 0)};
  bool isInBindPose = true;    ///< "lower" is
  bool isInGroup = false;      ///< of no type, which hides all bones
  bool hasSecondRoot = false;  ///< "lower" is a root of its own
  double boundAt = 0.0;        ///< how far off its place "lower" was when the skin was bound
  const char* mode = "Normalize";
  bool weighsAll = true;
  double firstWeight = 1.0;  ///< of point 0, which only "root" moves
  std::string name = "lower";
};

/// An arm of three bones, with a skin that follows two bones in the middle, two materials and a seam.
inline Character Arm(const ArmRig& rig) {
  Character model;
  const auto root = model.Bone("root", rig.isInGroup ? model.Node("group") : 0, rig.root),
             upper = model.Bone("upper", root, rig.upper);
  const auto lower = model.Bone(rig.name, rig.hasSecondRoot ? 0 : upper, rig.lower);
  auto mesh = model.Mesh("Arm", {0, 0, 0, 2, 0, 0, 4, 1, 0, 6, 1, 1, 4, 3, 2}, {0, 1, 2, -5, 2, 3, -5});
  Character::Coordinates(mesh, {0, 0, 1, 0, 1, 1}, {0, 1, 2, 0, 1, 2, 0});
  Character::MaterialNumbers(mesh, {0, 1});
  model.Material(mesh);
  model.Material(mesh);
  const double x = 5 + rig.boundAt;
  const auto bind = [&](Character::Id bone, double at, std::vector<double> points,
                        std::vector<double> weights) {
    FbxRecord& cluster = model.Weights(mesh, bone, std::move(points), std::move(weights));
    cluster.Add(Doubles("Transform", Translation(-at, -1, 0)));
    cluster.Add(Doubles("TransformLink", Translation(at, 1, 0)));
    cluster.Add({"Mode", {rig.mode}});
  };
  bind(root, 0, rig.weighsAll ? std::vector<double>{0} : std::vector<double>{},
       std::vector<double>(rig.weighsAll, rig.firstWeight));
  bind(upper, 2, {1, 2, 4}, {1, 0.5, 0.25});
  bind(lower, x, {2, 3, 4}, {0.5, 1, 0.75});
  std::vector<Character::PoseEntry> pose{
      {root, Translation(0, 1, 0)}, {upper, Translation(2, 1, 0)}, {mesh.node, Identity()}};
  if (rig.isInBindPose) pose.push_back({lower, Translation(5, 1, 0)});
  model.BindPose(pose);
  return model;
}

/// The model, and its package read back.
struct ModelAndPackage {
  explicit ModelAndPackage(const Character& model) : ModelAndPackage(model.Text()) {}
  /// @param name  of the file, which may make the model an actor
  explicit ModelAndPackage(std::string_view model, const std::string& name = "model.fbx",
                           const ts3d::RepairSettings& repairs = {})
      : scene(LoadSceneBytes(model)) {
    host.job.settings.repairs = repairs;
    EXPECT_EQ(host.Convert(model, name), ts3d::ConversionResult::Success);
    actor::Findings findings;
    std::string error;
    const std::string package = name.substr(0, name.size() - 3) + "czp";
    EXPECT_TRUE(LoadActor(host.folder.Path(package), {}, actor, findings, error)) << error;
  }
  prove::Proof Prove() const { return prove::Prove(*scene, actor, {.seed = 7, .poses = 16}); }

  TestHost host;
  std::unique_ptr<scene::KFbxScene> scene;
  actor::Actor actor;
};

}  // namespace support
