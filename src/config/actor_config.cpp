// SPDX-License-Identifier: MIT
#include "config/actor_config.h"

#include <algorithm>
#include <vector>

#include "config/bone_renames.h"
#include "config/control_bones.h"
#include "config/fixed_materials.h"
#include "config/mesh_list.h"
#include "core/names.h"
#include "core/trace.h"
#include "core/work_files.h"
#include "skeleton/skeleton_state.h"

namespace ts3d {
namespace {

constexpr std::string_view kTypeDefinitionHost = "http://www.tessaly3d.example";

/// Heights of the product's own bodies, not of the model.
std::string UnposedHeight(ActorType actorType) {
  if (actorType == ActorType::Male) return "\t<unposed_height>1.76136</unposed_height>\n";
  if (actorType == ActorType::Female) return "\t<unposed_height>1.6733</unposed_height>\n";
  return {};
}

std::string Head(const DocumentContent& content, const std::string& documentPath) {
  std::string text = DocumentHead() + "\t<object_id>" + ObjectId(content.actorType, documentPath) +
                     "</object_id>\n" + UnposedHeight(content.actorType);
  text += "\t<object_version major=\"1\" minor=\"0\" bugfix=\"0\"/>\n";
  text += "\t<scale>1.0</scale>\n<flags>\n\t<invert_v/>\n";
  text += "\t<rotation x=\"" + std::to_string(content.rotationX) + "\" y=\"" +
          std::to_string(content.rotationY) + "\"/>\n";
  return text + "</flags>\n\n";
}

std::string Bones(const DocumentContent& content) {
  const BoneTree& bones = content.bones;
  // Not the spelling of the package's member: the product asks for this one.
  std::string text = "<skeleton_file>Skeleton.CSF</skeleton_file>\n";
  text += "<bone_renames>\n" + BoneRenameLines(bones, content.boneRenameList) + "</bone_renames>\n\n";
  if (content.actorType != ActorType::None) {
    text += "<control_bones>\n\n" + ControlBoneBlocks(bones) + "</control_bones>\n\n";
  }
  return text;
}

bool IsDoubleSided(std::string_view name, const DocumentContent& content) {
  const std::vector<std::string_view> entries = SplitList(content.meshOptionList);
  return std::any_of(entries.begin(), entries.end(), [&](std::string_view entry) {
    return entry.starts_with('!') && EqualsIgnoreCase(entry.substr(1), name);
  });
}

std::string MeshLines(const DocumentContent& content, const MeshList& meshes) {
  std::string lines;
  meshes.ForEach(MeshList::OwnName::First, [&](const ListedName& listed) {
    if (IsLeftOut(listed, content.filter)) return;
    const std::string& name = listed.name;
    DebugTrace(ComposeMessage("Writing <mesh name=\"", name, "\""));
    lines += ComposeMessage("\t<mesh name=\"", name, "\" file=\"", name, ".cmf\"");
    lines += IsDoubleSided(name, content) ? " backfacing=\"both\"/>\n" : "/>\n";
  });
  return lines;
}

std::string MaterialLines(const DocumentContent& content, const MeshList& meshes) {
  std::string lines;
  meshes.ForEach(MeshList::OwnName::First, [&](const ListedName& listed) {
    if (IsLeftOut(listed, content.filter)) return;
    lines += MaterialLine(listed.name, content.nextThreadId++, listed.name + ".xrf");
  });
  return lines;
}

std::string Lists(const DocumentContent& content, const MeshList& meshes) {
  DebugTrace("<meshes>");
  std::string text = "<meshes>\n" + MeshLines(content, meshes);
  DebugTrace("</meshes>");
  text += "</meshes>\n<materials>\n" + FixedMaterialLines(content.actorType);
  return text + MaterialLines(content, meshes) + "</materials>\n";
}

}  // namespace

std::string DocumentHead() {
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE cal_config SYSTEM \"";
  return text.append(kTypeDefinitionHost).append("/dtds/cal_config.dtd\">\n<cal_config>\n");
}

std::string ObjectId(ActorType actorType, const std::string& documentPath) {
  switch (actorType) {
    case ActorType::Male:
      return "actor (male)";
    case ActorType::Female:
      return "actor (female)";
    case ActorType::Boy:
      return "actor (boy)";
    case ActorType::Girl:
      return "actor (girl)";
    case ActorType::Teenager:
      return "actor (teenager)";
    case ActorType::Baby:
      return "actor (baby)";
    case ActorType::None:
      break;
  }
  const std::string fileName = FileNamePart(documentPath);
  return fileName.substr(0, fileName.size() < 4 ? 0 : fileName.size() - 4);
}

void WriteActorConfig(const DocumentContent& content, const MeshList& meshes, const std::string& packagePath,
                      WorkFiles& files) {
  const std::string documentPath = ReplaceExtension(packagePath, "xfg");
  const std::string text =
      Head(content, documentPath) + Bones(content) + Lists(content, meshes) + "</cal_config>\n";
  platform::FilePtr file = CreateHostFile(files, documentPath, "w");
  if (!file) return;
  // A torso would be packed as if it were the document.
  if (!WriteAndClose(std::move(file), text)) DiscardFile(files, documentPath);
}

}  // namespace ts3d
