// SPDX-License-Identifier: MIT
#include "rig_check/choose_repairs.h"

#include "rig_check/repair_trial.h"

namespace ts3d {
namespace {

/// Tries one repair after the other on a model and keeps what helps.
class RepairChooser {
 public:
  explicit RepairChooser(const ConversionJob& job) : job_(job) { chosen_.settings = job.repairs; }

  ChosenRepairs Choose() {
    ChooseSkeletons();
    Choose(&RepairSettings::bindFromSkin, &RepairTrial::UnboundSkins, "--bind-from-skin",
           "skin clusters or meshes do not stand as they were bound");
    Choose(&RepairSettings::attachRigid, &RepairTrial::StrayMeshes, "--attach-rigid",
           "meshes without a skin leave their place or their bone");
    Choose(&RepairSettings::rigidBones, &RepairTrial::MisplacedBones, "--rigid-bones",
           "bones with weights stand in the wrong place");
    return chosen_;
  }

 private:
  using Setting = bool RepairSettings::*;
  using Measure = size_t (RepairTrial::*)();

  size_t Count(const RepairSettings& settings, Measure measure) {
    RepairTrial trial(job_, settings);
    return (trial.*measure)();
  }

  RepairSettings With(Setting setting) const {
    RepairSettings settings = chosen_.settings;
    settings.*setting = true;
    return settings;
  }

  void Need(Setting setting, const char* option, size_t count, const char* reason) {
    if (chosen_.settings.*setting) return;
    chosen_.settings.*setting = true;
    chosen_.needed.push_back({option, reason + (" (" + std::to_string(count) + ")")});
  }

  /// Opened groups may bring bones to light that only joined roots keep, so that the two are tried together.
  void ChooseSkeletons() {
    const size_t lost = Count(chosen_.settings, &RepairTrial::LostBones);
    if (lost == 0) return;
    const RepairSettings opened = With(&RepairSettings::openGroups);
    RepairSettings both = opened;
    both.joinRoots = true;
    const size_t lostWhenOpened = Count(opened, &RepairTrial::LostBones);
    const size_t lostWhenJoined = Count(With(&RepairSettings::joinRoots), &RepairTrial::LostBones);
    const size_t lostWithBoth = Count(both, &RepairTrial::LostBones);
    if (lostWithBoth < lostWhenJoined) {
      Need(&RepairSettings::openGroups, "--open-groups", lost,
           "bones that skins or meshes hang on are hidden by groups");
    }
    if (lostWithBoth < lostWhenOpened) {
      Need(&RepairSettings::joinRoots, "--join-roots", lost,
           "bones that skins or meshes hang on are lost, as the first skeleton lacks them");
    }
  }

  void Choose(Setting setting, Measure measure, const char* option, const char* reason) {
    if (chosen_.settings.*setting) return;
    const size_t without = Count(chosen_.settings, measure);
    if (without > 0 && Count(With(setting), measure) < without) Need(setting, option, without, reason);
  }

  const ConversionJob& job_;
  ChosenRepairs chosen_;
};

}  // namespace

ChosenRepairs ChooseRepairs(const ConversionJob& job) { return RepairChooser(job).Choose(); }

}  // namespace ts3d
