// SPDX-License-Identifier: MIT
#include "preview/stand.h"

#include <optional>

#include "preview/bone_names.h"
#include "preview/model.h"

namespace preview {
namespace {

/// The axis of the model's space along which `direction` leads most, `barred` left out.
std::optional<Vector> NearestAxis(Vector direction, const Vector& barred) {
  size_t longest = 0;
  for (size_t i = 0; i < 3; ++i) {
    if (barred[i] != 0.0) direction[i] = 0.0;
    if (std::abs(direction[i]) > std::abs(direction[longest])) longest = i;
  }
  if (direction[longest] == 0.0) return std::nullopt;
  Vector axis{};
  axis[longest] = direction[longest] > 0.0 ? 1.0 : -1.0;
  return axis;
}

std::optional<Vector> AxisFrom(const Places& from, const Places& to, const Vector& barred) {
  if (from.IsEmpty() || to.IsEmpty()) return std::nullopt;
  return NearestAxis(to.Middle() - from.Middle(), barred);
}

/// Rule 1: the ground under the model.
std::optional<Vector> UpFromGround(const base::Box& bounds, const Vector& side) {
  constexpr double kTolerance = 0.04;  // soles reach a little below the ground
  Vector up{};
  int found = 0;
  for (size_t i = 0; i < 3; ++i) {
    const double allowed = kTolerance * bounds.Extent()[i];
    if (allowed <= 0.0 || side[i] != 0.0) continue;
    const bool above = std::abs(bounds.low[i]) <= allowed;
    const bool below = std::abs(bounds.high[i]) <= allowed;
    if (above == below) continue;
    up[i] = above ? 1.0 : -1.0;
    ++found;
  }
  return found == 1 ? std::optional(up) : std::nullopt;
}

Vector FindUp(const base::Box& bounds, const NamedPlaces& places, const Vector& side) {
  if (const auto up = UpFromGround(bounds, side)) return *up;
  if (const auto up = AxisFrom(places.foot.IsEmpty() ? places.toe : places.foot, places.head, side))
    return *up;
  constexpr double kClearly = 1.25;
  const Vector extent = bounds.Extent();
  const bool alongZ = side[1] != 0.0 || (side[2] == 0.0 && extent[2] > kClearly * extent[1]);
  return alongZ ? Vector{0, 0, 1} : Vector{0, 1, 0};
}

Vector FindFront(const NamedPlaces& places, const Vector& up) {
  if (const auto side = NearestAxis(places.toLeft.Middle(), up)) return Cross(*side, up);
  if (const auto front = AxisFrom(places.foot, places.toe, up)) return *front;
  return up[1] != 0.0 ? Vector{0, 0, 1} : Vector{0, -1, 0};
}

}  // namespace

Stand FindStand(const actor::Actor& drawable, const std::optional<Vector>& up) {
  const NamedPlaces places = FindNamedPlaces(drawable.skeleton);
  const Vector side = NearestAxis(places.toLeft.Middle(), {}).value_or(Vector{});
  Stand stand;
  stand.up = up ? *up : FindUp(ModelBounds(drawable), places, side);
  stand.front = FindFront(places, stand.up);
  stand.side = Cross(stand.up, stand.front);
  return stand;
}

const std::map<std::string, Vector>& AxisNames() {
  static const std::map<std::string, Vector> axes = {{"x", {1, 0, 0}},   {"y", {0, 1, 0}},
                                                     {"z", {0, 0, 1}},   {"-x", {-1, 0, 0}},
                                                     {"-y", {0, -1, 0}}, {"-z", {0, 0, -1}}};
  return axes;
}

}  // namespace preview
