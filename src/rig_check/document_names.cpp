// SPDX-License-Identifier: MIT
#include "rig_check/document_names.h"

#include <set>

#include "config/mesh_list.h"

namespace ts3d {

bool BreaksDocument(std::string_view name) { return name.find_first_of("&<\"") != std::string_view::npos; }

bool IsNamedAsItIs(const BoneNode& bone, int32_t id) { return id == 0 || !bone.weighted; }

std::vector<std::string> NamesThatBreakDocument(const ModelSource& model, const BoneTree& bones) {
  std::set<std::string> names;
  MeshList(model.Root()).ForEach(MeshList::OwnName::First, [&](const ListedName& listed) {
    if (BreaksDocument(listed.mesh) && !IsLeftOut(listed, model.Filter())) names.insert(listed.mesh);
  });
  for (int32_t id = 0; id < bones.BoneCount(); ++id) {
    const BoneNode& bone = *bones.FindById(id);
    if (IsNamedAsItIs(bone, id) && BreaksDocument(bone.name)) names.insert(bone.name);
  }
  return {names.begin(), names.end()};
}

}  // namespace ts3d
