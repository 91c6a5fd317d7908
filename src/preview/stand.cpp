// SPDX-License-Identifier: MIT
#include "preview/stand.h"

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "preview/model.h"

namespace preview {
namespace {

/// The middle of some bones: the median along each axis, so that a stray one does no harm.
struct Place {
  std::vector<Vector> origins;

  bool IsEmpty() const { return origins.empty(); }
  Vector Middle() const {
    Vector middle{};
    for (size_t axis = 0; axis < 3; ++axis) {
      std::vector<double> along;
      for (const Vector& origin : origins) along.push_back(origin[axis]);
      const auto half = along.begin() + static_cast<std::ptrdiff_t>(along.size() / 2);
      std::nth_element(along.begin(), half, along.end());
      middle[axis] = *half;
    }
    return middle;
  }
};

/// What the names of the bones tell.
struct NamedPlaces {
  Place head, foot, toe, left, right;
};

/// The words of a bone's name in lower case: "Bip01 L Foot" -> "bip01", "l", "foot".
std::vector<std::string> Words(const std::string& name) {
  std::vector<std::string> words(1);
  for (const char c : name) {
    const bool upper = c >= 'A' && c <= 'Z';
    if (upper || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) {
      words.back() += upper ? static_cast<char>(c - 'A' + 'a') : c;
    } else {
      words.emplace_back();
    }
  }
  return words;
}

bool AnyHolds(const std::vector<std::string>& words, std::initializer_list<const char*> parts) {
  for (const std::string& word : words) {
    for (const char* part : parts) {
      if (word.find(part) != std::string::npos) return true;
    }
  }
  return false;
}

bool IsOnSide(const std::vector<std::string>& words, const char* letter, const char* side) {
  return std::any_of(words.begin(), words.end(),
                     [&](const std::string& word) { return word == letter || word.starts_with(side); });
}

NamedPlaces FindNamedPlaces(const actor::Skeleton& skeleton) {
  NamedPlaces places;
  const std::vector<Vector> origins = BoneOrigins(skeleton);
  for (size_t i = 0; i < origins.size(); ++i) {
    const std::vector<std::string> words = Words(skeleton.bones[i].name);
    const Vector& origin = origins[i];
    if (IsOnSide(words, "l", "left")) places.left.origins.push_back(origin);
    if (IsOnSide(words, "r", "right")) places.right.origins.push_back(origin);
    if (AnyHolds(words, {"control"})) continue;  // handles stand off the body
    if (AnyHolds(words, {"head", "neck", "skull"})) places.head.origins.push_back(origin);
    if (AnyHolds(words, {"toe"})) {
      places.toe.origins.push_back(origin);
    } else if (AnyHolds(words, {"foot", "feet", "ankle"})) {
      places.foot.origins.push_back(origin);
    }
  }
  return places;
}

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

std::optional<Vector> AxisFrom(const Place& from, const Place& to, const Vector& barred) {
  if (from.IsEmpty() || to.IsEmpty()) return std::nullopt;
  return NearestAxis(to.Middle() - from.Middle(), barred);
}

/// Rule 1: the ground under the model.
std::optional<Vector> UpFromGround(const Bounds& bounds, const Vector& side) {
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

Vector FindUp(const Bounds& bounds, const NamedPlaces& places, const Vector& side) {
  if (const auto up = UpFromGround(bounds, side)) return *up;
  if (const auto up = AxisFrom(places.foot.IsEmpty() ? places.toe : places.foot, places.head, side))
    return *up;
  constexpr double kClearly = 1.25;
  const Vector extent = bounds.Extent();
  const bool alongZ = side[1] != 0.0 || (side[2] == 0.0 && extent[2] > kClearly * extent[1]);
  return alongZ ? Vector{0, 0, 1} : Vector{0, 1, 0};
}

Vector FindFront(const NamedPlaces& places, const Vector& up) {
  if (const auto side = AxisFrom(places.right, places.left, up)) return Cross(*side, up);
  if (const auto front = AxisFrom(places.foot, places.toe, up)) return *front;
  return up[1] != 0.0 ? Vector{0, 0, 1} : Vector{0, -1, 0};
}

}  // namespace

Stand FindStand(const actor::Actor& drawable, const std::optional<Vector>& up) {
  const NamedPlaces places = FindNamedPlaces(drawable.skeleton);
  const Vector side = AxisFrom(places.right, places.left, {}).value_or(Vector{});
  Stand stand;
  stand.up = up ? *up : FindUp(ModelBounds(drawable), places, side);
  stand.front = FindFront(places, stand.up);
  stand.side = Cross(stand.up, stand.front);
  return stand;
}

}  // namespace preview
