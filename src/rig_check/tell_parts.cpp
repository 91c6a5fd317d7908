// SPDX-License-Identifier: MIT
#include <algorithm>
#include <unordered_map>

#include "config/mesh_list.h"
#include "rig_check/finding_kinds.h"
#include "rig_check/rig_faults.h"

namespace ts3d {

void TellShiftedParts(const ModelSource& model, const std::vector<MeshFacts>& meshes, RigReport& report) {
  // Mesh files and lines of the document are numbered each by themselves, and a runtime joins equal numbers.
  std::vector<std::string> listed, written;
  MeshList(model.Root()).ForEach(MeshList::OwnName::First, [&](const ListedName& name) {
    if (!IsLeftOut(name, model.Filter())) listed.push_back(name.name);
  });
  for (const MeshFacts& mesh : meshes) written.insert(written.end(), mesh.files.begin(), mesh.files.end());
  const auto [fileAt, lineAt] = std::mismatch(written.begin(), written.end(), listed.begin(), listed.end());
  if (fileAt == written.end()) return;
  // Files of one name get the material of the last of them; that they clash is told elsewhere.
  std::unordered_map<std::string, std::ptrdiff_t> lineOf;
  for (auto line = listed.begin(); line != listed.end(); ++line) lineOf[*line] = line - listed.begin();
  const std::string& cause = lineOf.contains(*fileAt) ? *lineAt : *fileAt;
  for (auto file = fileAt; file != written.end(); ++file) {
    const auto line = lineOf.find(*file);
    if (line != lineOf.end() && line->second != file - written.begin()) {
      report.Add(findings::kShiftedParts, *file, {cause});
    }
  }
}

}  // namespace ts3d
