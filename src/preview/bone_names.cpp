// SPDX-License-Identifier: MIT
#include "preview/bone_names.h"

#include <initializer_list>
#include <map>
#include <string>

#include "preview/model.h"

namespace preview {
namespace {

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

/// The name without the word, or the beginning of one, for a side; empty when it has none.
std::string NameWithoutSide(const std::vector<std::string>& words, const std::string& letter,
                            const std::string& side) {
  std::string rest;
  bool found = false;
  for (const std::string& word : words) {
    const bool isLetter = word == letter, startsWithSide = word.starts_with(side);
    rest += (isLetter ? "" : startsWithSide ? word.substr(side.size()) : word) + " ";
    found = found || isLetter || startsWithSide;
  }
  return found ? rest : "";
}

/// Bones of one side by their names without it.
using Side = std::map<std::string, Vector>;

void AddToSide(Side& side, const std::string& name, const Vector& origin) {
  if (!name.empty()) side.emplace(name, origin);
}

void AddBodyPart(NamedPlaces& places, const std::vector<std::string>& words, const Vector& origin) {
  if (AnyHolds(words, {"control"})) return;  // handles stand off the body
  if (AnyHolds(words, {"head", "neck", "skull"})) places.head.Add(origin);
  if (AnyHolds(words, {"toe"})) {
    places.toe.Add(origin);
  } else if (AnyHolds(words, {"foot", "feet", "ankle"})) {
    places.foot.Add(origin);
  }
}

}  // namespace

Vector Places::Middle() const {
  Vector middle{};
  if (places.empty()) return middle;
  for (size_t axis = 0; axis < 3; ++axis) {
    std::vector<double> along;
    for (const Vector& place : places) along.push_back(place[axis]);
    const auto half = along.begin() + static_cast<std::ptrdiff_t>(along.size() / 2);
    std::nth_element(along.begin(), half, along.end());
    middle[axis] = *half;
  }
  return middle;
}

NamedPlaces FindNamedPlaces(const actor::Skeleton& skeleton) {
  NamedPlaces places;
  Side left, right;
  const std::vector<Vector> origins = BoneOrigins(skeleton);
  for (size_t i = 0; i < origins.size(); ++i) {
    const std::vector<std::string> words = Words(skeleton.bones[i].name);
    AddToSide(left, NameWithoutSide(words, "l", "left"), origins[i]);
    AddToSide(right, NameWithoutSide(words, "r", "right"), origins[i]);
    AddBodyPart(places, words, origins[i]);
  }
  for (const auto& [name, origin] : right) {
    const auto other = left.find(name);
    if (other != left.end()) places.toLeft.Add(other->second - origin);
  }
  return places;
}

}  // namespace preview
