// SPDX-License-Identifier: MIT
//
// Which way is up.
#include <gtest/gtest.h>

#include "preview/stand.h"
#include "support/actors.h"

namespace {

using actor::Vector3;
using preview::Vector;

constexpr int kX = 0, kY = 1, kZ = 2;

/// A person 1.8 tall, arms along X, facing +Z, that stands on
/// the ground along Y; then its axes change places.
struct Person {
  std::array<int, 3> to{kX, kY, kZ};   ///< where X, Y and Z go
  std::array<float, 3> sign{1, 1, 1};  ///< of what arrives
  float lift = 0.0f;
  bool names = true;

  Vector3 Turn(const Vector3& v) const {
    Vector3 turned{};
    for (size_t i = 0; i < 3; ++i) {
      const auto place = static_cast<size_t>(to[i]);
      turned[place] = sign[place] * (v[i] + (i == kY ? lift : 0.0f));
    }
    return turned;
  }

  actor::Actor Make() const {
    actor::Actor actor;
    actor::Mesh mesh = support::Square("body");
    const Vector3 corners[] = {
        {-0.6f, 0, -0.15f}, {0.6f, 0, 0.2f}, {0.6f, 1.8f, 0.2f}, {-0.6f, 1.8f, -0.15f}};
    for (size_t i = 0; i < 4; ++i) mesh.vertices[i].position = Turn(corners[i]);
    actor.meshes = {mesh};
    const std::pair<const char*, Vector3> bones[] = {{"Head", {0, 1.6f, 0}},
                                                     {"Bip01 L Foot", {0.1f, 0.1f, 0}},
                                                     {"Bip01 R Foot", {-0.1f, 0.1f, 0}},
                                                     {"hand.l", {0.6f, 0.9f, 0.1f}},
                                                     {"hand.r", {-0.6f, 0.9f, 0.1f}},
                                                     {"rig:LeftArm", {0.2f, 1.4f, 0}},
                                                     {"rig:RightArm", {-9.0f, -30.0f, 0}}};  // a stray one
    for (const auto& [name, origin] : bones)
      actor.skeleton.bones.push_back(support::BoneAt(names ? name : "bone", Turn(origin)));
    return actor;
  }
};

TEST(PreviewStand, BonesAndBoundsTellHowAModelStands) {
  struct {
    Person person;
    Vector up, front;
  } const cases[] = {{{}, {0, 1, 0}, {0, 0, 1}},
                     {{{kX, kZ, kY}, {1, -1, 1}}, {0, 0, 1}, {0, -1, 0}},         // along Z, facing -Y
                     {{{kX, kY, kZ}, {1, -1, -1}}, {0, -1, 0}, {0, 0, -1}},       // on its head
                     {{{kZ, kX, kY}, {1, 1, 1}, 0.5f}, {1, 0, 0}, {0, 1, 0}},     // along X, in the air
                     {{{kX, kZ, kY}, {1, -1, 1}, -0.9f}, {0, 0, 1}, {0, -1, 0}},  // lying around the middle
                     {{{kX, kZ, kY}, {1, -1, 1}, 0, false}, {0, 0, 1}, {0, -1, 0}},  // without names
                     {{{kX, kY, kZ}, {1, 1, 1}, 3.0f, false}, {0, 1, 0}, {0, 0, 1}}};
  for (const auto& [person, up, front] : cases) {
    const preview::Stand stand = preview::FindStand(person.Make());
    EXPECT_EQ(stand.up, up) << testing::PrintToString(up) << testing::PrintToString(front);
    EXPECT_EQ(stand.front, front) << testing::PrintToString(up) << testing::PrintToString(front);
    EXPECT_EQ(preview::Cross(stand.side, stand.up), stand.front);
  }
  EXPECT_EQ(preview::FindStand(Person().Make(), Vector{0, 0, -1}).up, (Vector{0, 0, -1}));
}

}  // namespace
