// SPDX-License-Identifier: MIT
#include "rig_check/choose_repairs.h"

#include <algorithm>

#include "rig_check/repair_trial.h"

namespace ts3d {
namespace {

using Setting = bool RepairSettings::*;
using Measure = size_t (RepairTrial::*)();

struct Repair {
  Setting setting;
  Measure measure;
  const char* option;
  const char* reason;
};

constexpr Repair kOpenGroups{&RepairSettings::openGroups, &RepairTrial::LostBones, "--open-groups",
                             "bones that skins or meshes hang on are hidden by groups"};
constexpr Repair kJoinRoots{&RepairSettings::joinRoots, &RepairTrial::LostBones, "--join-roots",
                            "bones that skins or meshes hang on are lost, as the first skeleton lacks them"};
/// In the order in which they are tried, after those of the skeleton.
constexpr Repair kPlaceRepairs[] = {
    {&RepairSettings::bindFromSkin, &RepairTrial::UnboundSkins, "--bind-from-skin",
     "skin clusters or meshes do not stand as they were bound"},
    {&RepairSettings::attachRigid, &RepairTrial::StrayMeshes, "--attach-rigid",
     "meshes without a skin leave their place or their bone"},
    {&RepairSettings::rigidBones, &RepairTrial::MisplacedBones, "--rigid-bones",
     "bones with weights stand in the wrong place"}};

size_t Count(const ModelSource& model, const RepairSettings& settings, Measure measure) {
  RepairTrial trial(model, settings);
  return (trial.*measure)();
}

RepairSettings With(RepairSettings settings, Setting setting, bool isOn = true) {
  settings.*setting = isOn;
  return settings;
}

/// Tries one repair after the other on a model and keeps what helps.
class RepairChooser {
 public:
  explicit RepairChooser(const ModelSource& model) : model_(model) {
    chosen_.settings = model.settings.repairs;
  }

  ChosenRepairs Choose() {
    ChooseSkeletons();
    for (const Repair& repair : kPlaceRepairs) Choose(repair);
    return chosen_;
  }

 private:
  void Need(const Repair& repair, size_t count) {
    if (chosen_.settings.*repair.setting) return;
    chosen_.settings.*repair.setting = true;
    chosen_.needed.push_back({repair.option, repair.reason + (" (" + std::to_string(count) + ")")});
  }

  /// Opened groups may bring bones to light that only joined roots keep, so that the two are tried together.
  void ChooseSkeletons() {
    const auto lostIn = [&](const RepairSettings& settings) {
      return Count(model_, settings, &RepairTrial::LostBones);
    };
    const size_t lost = lostIn(chosen_.settings);
    if (lost == 0) return;
    const RepairSettings opened = With(chosen_.settings, kOpenGroups.setting);
    const size_t lostWhenOpened = lostIn(opened);
    const size_t lostWhenJoined = lostIn(With(chosen_.settings, kJoinRoots.setting));
    const size_t lostWithBoth = lostIn(With(opened, kJoinRoots.setting));
    if (lostWithBoth < lostWhenJoined) Need(kOpenGroups, lost);
    if (lostWithBoth < lostWhenOpened) Need(kJoinRoots, lost);
  }

  void Choose(const Repair& repair) {
    if (chosen_.settings.*repair.setting) return;
    const size_t without = Count(model_, chosen_.settings, repair.measure);
    if (without == 0) return;
    if (Count(model_, With(chosen_.settings, repair.setting), repair.measure) < without)
      Need(repair, without);
  }

  const ModelSource& model_;
  ChosenRepairs chosen_;
};

size_t SizeOf(const RepairSettings& settings) {
  size_t size = settings.openGroups + settings.joinRoots;
  for (const Repair& repair : kPlaceRepairs) size += settings.*repair.setting;
  return size;
}

/// The smallest of the skeleton's repairs that lose no more bones than others.
std::vector<RepairSettings> SkeletonRepairs(const ModelSource& model) {
  const RepairSettings none = model.settings.repairs, opened = With(none, kOpenGroups.setting);
  const RepairSettings joined = With(none, kJoinRoots.setting), both = With(opened, kJoinRoots.setting);
  size_t least = Count(model, none, &RepairTrial::LostBones);
  std::vector<RepairSettings> found{none};
  for (const RepairSettings& next : {opened, joined, both}) {
    if (least == 0) break;
    const size_t lost = Count(model, next, &RepairTrial::LostBones);
    if (lost < least) found.clear();
    const bool isLarger = !found.empty() && SizeOf(found.front()) < SizeOf(next);
    if (lost <= least && !isLarger) found.push_back(next);
    least = std::min(least, lost);
  }
  return found;
}

/// Repairs that find something to do, by themselves or when others have done theirs.
std::vector<Setting> PlaceRepairs(const ModelSource& model, const RepairSettings& skeleton) {
  std::vector<Setting> found;
  RepairSettings before = skeleton;
  for (const Repair& repair : kPlaceRepairs) {
    if (skeleton.*repair.setting) continue;
    if (Count(model, skeleton, repair.measure) == 0 && Count(model, before, repair.measure) == 0) continue;
    found.push_back(repair.setting);
    before.*repair.setting = true;
  }
  return found;
}

}  // namespace

ChosenRepairs ChooseRepairs(const ModelSource& model) { return RepairChooser(model).Choose(); }

std::vector<RepairSettings> CandidateRepairs(const ModelSource& model) {
  std::vector<RepairSettings> sets;
  for (const RepairSettings& skeleton : SkeletonRepairs(model)) {
    const std::vector<Setting> repairs = PlaceRepairs(model, skeleton);
    for (size_t choice = 0; choice < size_t{1} << repairs.size(); ++choice) {
      RepairSettings settings = skeleton;
      for (size_t i = 0; i < repairs.size(); ++i) {
        if (choice >> i & 1) settings.*repairs[i] = true;
      }
      sets.push_back(settings);
    }
  }
  std::stable_sort(sets.begin(), sets.end(),
                   [](const auto& a, const auto& b) { return SizeOf(a) < SizeOf(b); });
  return sets;
}

ChosenRepairs DescribeRepairs(const ModelSource& model, const RepairSettings& settings) {
  ChosenRepairs chosen{settings, {}};
  const auto describe = [&](const Repair& repair, const RepairSettings& without) {
    if (!(settings.*repair.setting) || model.settings.repairs.*repair.setting) return;
    const size_t count = Count(model, without, repair.measure);
    chosen.needed.push_back({repair.option, repair.reason + (" (" + std::to_string(count) + ")")});
  };
  for (const Repair& repair : {kOpenGroups, kJoinRoots}) describe(repair, model.settings.repairs);
  for (const Repair& repair : kPlaceRepairs) describe(repair, With(settings, repair.setting, false));
  return chosen;
}

}  // namespace ts3d
