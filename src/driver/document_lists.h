// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ts3d {

/// What stands in `text` between `before` and the next `after`; empty when either is missing. Cuts `text` to
/// what follows, or to nothing.
std::string_view TakeBetween(std::string_view& text, std::string_view before, std::string_view after);

/// A line of a document's mesh list. Names are as they stand there, escaped or not.
struct MeshLine {
  std::string_view line;  ///< without line end
  std::string_view name;
  bool bothSides = false;
};
std::vector<MeshLine> ReadMeshLines(std::string_view document);

/// A line of a document's material list.
struct ListedMaterial {
  std::string_view name, thread, file;
};
std::vector<ListedMaterial> ReadMaterialLines(std::string_view document);

/// A line of a document's bone renames, the root bone's first.
struct BoneRename {
  std::string_view oldName, newName;
};
std::vector<BoneRename> ReadBoneRenames(std::string_view document);

}  // namespace ts3d
