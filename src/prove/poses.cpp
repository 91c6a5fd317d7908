// SPDX-License-Identifier: MIT
#include "prove/poses.h"

#include <cmath>
#include <numbers>

namespace prove {
namespace {

constexpr double kUsualTurn = 40.0, kLargeTurn = 120.0;
constexpr Turn kNoTurn{0, 0, 0, 1};

/// Numbers by chance that are the same on every system: SplitMix64.
class Chance {
 public:
  explicit Chance(uint64_t seed) : state_(seed) {}

  uint64_t Next() {
    uint64_t z = (state_ += 0x9e3779b97f4a7c15u);
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
    return z ^ (z >> 31);
  }
  /// From 0 to below 1.
  double Part() { return static_cast<double>(Next() >> 11) * 0x1p-53; }
  size_t Below(size_t count) { return static_cast<size_t>(Next() % count); }
  /// About an axis of any direction.
  Turn AnyTurn(double mostDegrees) {
    const double z = 2.0 * Part() - 1.0, around = 2.0 * std::numbers::pi * Part();
    const double r = std::sqrt(1.0 - z * z);
    return TurnAbout({r * std::cos(around), r * std::sin(around), z}, mostDegrees * Part());
  }

 private:
  uint64_t state_;
};

std::vector<Turn> TurnAll(const ModelRig& rig, Chance& chance) {
  std::vector<Turn> turns;
  for (const int32_t node : rig.nodeOf) {
    const Turn turn = chance.AnyTurn(kUsualTurn);
    turns.push_back(node < 0 ? kNoTurn : turn);  // the model has nothing to turn
  }
  for (size_t i = 0; i < rig.lostLinks.size(); ++i) turns.push_back(chance.AnyTurn(kUsualTurn));
  return turns;
}

/// Turns some bone and a line of bones below it.
std::vector<Turn> TurnChain(const actor::Skeleton& skeleton, const ModelRig& rig, Chance& chance) {
  std::vector<Turn> turns(rig.nodeOf.size() + rig.lostLinks.size(), kNoTurn);
  size_t bone = chance.Below(rig.nodeOf.size());
  while (true) {
    const Turn turn = chance.AnyTurn(kLargeTurn);
    if (rig.nodeOf[bone] >= 0) turns[bone] = turn;
    const std::vector<int32_t>& children = skeleton.bones[bone].children;
    if (children.empty()) return turns;
    bone = static_cast<size_t>(children[chance.Below(children.size())]);
  }
}

}  // namespace

std::vector<Pose> MakePoses(const actor::Skeleton& skeleton, const ModelRig& rig, uint64_t seed, int count) {
  std::vector<Pose> poses{{Pose::Kind::Bind, "bind", {}}, {Pose::Kind::Present, "present", {}}};
  if (rig.nodeOf.empty() && rig.lostLinks.empty()) return poses;
  Chance chance(seed);
  for (int i = 1; i <= count; ++i) {
    const bool isChain = i % 4 == 0 && !rig.nodeOf.empty();
    poses.push_back({Pose::Kind::Turned, (isChain ? "chain " : "turned ") + std::to_string(i),
                     isChain ? TurnChain(skeleton, rig, chance) : TurnAll(rig, chance)});
  }
  return poses;
}

}  // namespace prove
