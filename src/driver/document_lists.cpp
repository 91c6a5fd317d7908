// SPDX-License-Identifier: MIT
//
// Documents are read as they are written, by line: names may make them malformed XML.
#include "driver/document_lists.h"

#include <algorithm>

namespace ts3d {
namespace {

/// The lines between `begin` and `end` that hold `mark`.
std::vector<std::string_view> LinesBetween(std::string_view document, std::string_view begin,
                                           std::string_view end, std::string_view mark) {
  std::vector<std::string_view> lines;
  std::string_view section = TakeBetween(document, begin, end);
  while (!section.empty()) {
    const std::string_view line = section.substr(0, section.find('\n'));
    if (line.find(mark) != std::string_view::npos) lines.push_back(line);
    section.remove_prefix(std::min(line.size() + 1, section.size()));
  }
  return lines;
}

}  // namespace

std::string_view TakeBetween(std::string_view& text, std::string_view before, std::string_view after) {
  const size_t at = text.find(before);
  const size_t begin = at == std::string_view::npos ? at : at + before.size();
  const size_t end = begin == std::string_view::npos ? begin : text.find(after, begin);
  if (end == std::string_view::npos) {
    text = {};
    return {};
  }
  const std::string_view found = text.substr(begin, end - begin);
  text.remove_prefix(end + after.size());
  return found;
}

std::vector<MeshLine> ReadMeshLines(std::string_view document) {
  std::vector<MeshLine> meshes;
  for (const std::string_view line : LinesBetween(document, "<meshes>", "</meshes>", "<mesh name=\"")) {
    std::string_view rest = line;
    const std::string_view name = TakeBetween(rest, "<mesh name=\"", "\" file=\"");
    meshes.push_back({line, name, rest.ends_with("\" backfacing=\"both\"/>")});
  }
  return meshes;
}

std::vector<ListedMaterial> ReadMaterialLines(std::string_view document) {
  std::vector<ListedMaterial> materials;
  for (std::string_view line :
       LinesBetween(document, "<materials>", "</materials>", "<material_file name=\"")) {
    ListedMaterial& material = materials.emplace_back();
    material.name = TakeBetween(line, "<material_file name=\"", "\" threadID=\"");
    material.thread = line.substr(0, line.find("\">"));
    material.file = TakeBetween(line, "\">", "</material_file>");
  }
  return materials;
}

std::vector<BoneRename> ReadBoneRenames(std::string_view document) {
  std::vector<BoneRename> renames;
  for (std::string_view line :
       LinesBetween(document, "<bone_renames>", "</bone_renames>", "\t<bone_rename old=\"")) {
    BoneRename& rename = renames.emplace_back();
    rename.oldName = TakeBetween(line, "<bone_rename old=\"", "\" new=\"");
    rename.newName = line.substr(0, line.rfind("\"/>"));
  }
  return renames;
}

}  // namespace ts3d
