// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "actor/actor.h"
#include "actor/package_contents.h"

namespace actor {

/// What a difference is about.
enum class Part { Bone, Mesh, Material, Picture, Document, File };

/// Something that two packages say differently.
struct Difference {
  Part part = Part::File;
  std::string code;  ///< for programs, as "bone-moved"; never changes its meaning
  std::string name;  ///< of the bone, mesh, ...
  std::string text;  ///< what became of it, without the name
};
using Differences = std::vector<Difference>;

/// A package that was read: its files, and the actor in them.
struct ReadPackageParts {
  const PackageContents& contents;
  const Actor& actor;
};

/// What is different in `after`, part by part. Dates, packing and the order of files do not count, nor does what
/// nobody sees: a hundred-thousandth of the model's size, 0.01 degrees, a ten-thousandth of a weight.
Differences ComparePackages(const ReadPackageParts& before, const ReadPackageParts& after);

/// The part of it that is about meshes. Weights are compared by the names of bones.
void CompareMeshes(const Actor& before, const Actor& after, Differences& differences);

/// The part of it that is about documents.
void CompareDocuments(const ReadPackageParts& before, const ReadPackageParts& after,
                      Differences& differences);

/// Calls `compare` with the items of each name that both lists have, and tells of names that only one has; of
/// several items of one name the first counts.
/// @param kind  "bone", ...: begins the codes
template <class Item, class Compare>
void MatchByName(Part part, const std::string& kind, const std::vector<Item>& before,
                 const std::vector<Item>& after, Differences& differences, const Compare& compare) {
  std::map<std::string_view, const Item*> rest;
  for (const Item& item : after) rest.try_emplace(item.name, &item);
  for (const Item& item : before) {
    const auto found = rest.find(item.name);
    if (found == rest.end()) {
      differences.push_back({part, kind + "-removed", item.name, "is gone"});
    } else if (found->second) {
      compare(item, *found->second);
      found->second = nullptr;
    }
  }
  for (const Item& item : after) {
    if (rest.at(item.name) == &item) differences.push_back({part, kind + "-added", item.name, "is new"});
  }
}

/// "scale 1 -> 2"
std::string Changed(const std::string& what, const std::string& before, const std::string& after);
/// "1.5": as short as a person wants it.
std::string ShortText(double number);

}  // namespace actor
