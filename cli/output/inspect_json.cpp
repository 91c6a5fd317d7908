// SPDX-License-Identifier: MIT
#include <algorithm>

#include "actor/picture_header.h"
#include "core/json_output.h"
#include "inspect/actor_measure.h"
#include "output/inspection.h"

namespace cli {
namespace {

using ts3d::JsonWriter;

void WriteMembers(JsonWriter& json, const actor::PackageContents& contents) {
  json.Objects("members", contents.members, [&](const actor::Member& member) {
    json.Member("name", member.name);
    json.Member("size", member.size);
    json.Member("packed_size", member.packedSize);
    json.Member("date", member.date.empty() ? std::nullopt : std::optional(member.date));
    json.Member("sound", member.sound);
    json.Member("superseded", member.superseded);
  });
}

void WriteDocument(JsonWriter& json, const actor::Document& document) {
  if (document.memberName.empty()) return json.Member("document", nullptr);
  json.OpenObject("document");
  json.Member("file", document.memberName);
  json.Member("object_id", document.objectId);
  json.Member("scale", document.scale);
  json.OpenObject("rotation");
  json.Member("x", document.rotationX);
  json.Member("y", document.rotationY);
  json.CloseObject();
  json.Member("skeleton_file", document.skeletonFile);
  json.Objects("bone_renames", document.boneRenames, [&](const auto& pair) {
    const auto& [oldName, newName] = pair;
    json.Member("old", oldName);
    json.Member("new", newName);
  });
  json.Objects("meshes", document.meshes, [&](const actor::DocumentMesh& mesh) {
    json.Member("name", mesh.name);
    json.Member("file", mesh.file);
    json.Member("both_sides", mesh.bothSides);
  });
  json.Objects("materials", document.materials, [&](const actor::DocumentMaterial& material) {
    json.Member("name", material.name);
    json.Member("file", material.file);
    json.Member("thread", material.threadId);
  });
  json.CloseObject();
}

void WriteBones(JsonWriter& json, const actor::Skeleton& skeleton) {
  json.OpenArray("bones");
  for (size_t i = 0; i < skeleton.bones.size(); ++i) {
    json.OpenObject();
    json.Member("id", i);
    json.Member("name", skeleton.bones[i].name);
    json.Member("parent", skeleton.bones[i].parent);
    json.CloseObject();
  }
  json.CloseArray();
}

void WriteMeshes(JsonWriter& json, const std::vector<actor::Mesh>& meshes) {
  json.Objects("meshes", meshes, [&](const actor::Mesh& mesh) {
    json.Member("name", mesh.name);
    json.Member("thread", mesh.threadId);
    json.Member("vertices", mesh.vertices.size());
    json.Member("faces", mesh.faces.size());
    json.Member("influences", mesh.influences.size());
    if (const actor::Box box = BoundsOf(mesh); box.IsEmpty()) {
      json.Member("bounds", nullptr);
    } else {
      json.OpenObject("bounds");
      json.Member("low", box.low);
      json.Member("high", box.high);
      json.CloseObject();
    }
  });
}

void WriteMaterials(JsonWriter& json, const std::vector<actor::Material>& materials) {
  json.Objects("materials", materials, [&](const actor::Material& material) {
    json.Member("name", material.name);
    json.Member("ambient", material.ambient);
    json.Member("diffuse", material.diffuse);
    json.Member("specular", material.specular);
    json.Member("shininess", material.shininess);
    json.Member("picture", material.hasMap ? std::optional(material.map) : std::nullopt);
  });
}

void WritePictures(JsonWriter& json, const std::vector<actor::Picture>& pictures) {
  json.OpenArray("pictures");
  for (const actor::Picture& picture : pictures) {
    actor::PictureHeader header;
    const bool isKnown = !ReadPictureHeader(picture.bytes, header);
    const auto known = [&](auto number) { return isKnown ? std::optional(number) : std::nullopt; };
    json.OpenObject();
    json.Member("name", picture.name);
    json.Member("width", known(header.width));
    json.Member("height", known(header.height));
    json.Member("bits", known(header.bits));
    json.CloseObject();
  }
  json.CloseArray();
}

std::vector<ts3d::Finding> MessagesOf(const Inspection& inspection) {
  std::vector<ts3d::Finding> messages;
  if (!inspection.error.empty()) {
    messages.push_back(
        {"unreadable-package", ts3d::Severity::Error, ts3d::Subject::File, {}, inspection.error, {}});
  }
  messages.insert(messages.end(), inspection.findings.begin(), inspection.findings.end());
  return messages;
}

void WriteInspection(JsonWriter& json, const Inspection& inspection) {
  const actor::Actor& actor = inspection.actor;
  json.OpenObject();
  json.Member("path", inspection.path);
  json.Member("readable", inspection.error.empty());
  json.Key("messages");
  ts3d::WriteFindings(json, MessagesOf(inspection));
  WriteMembers(json, inspection.contents);
  WriteDocument(json, actor.document);
  WriteBones(json, actor.skeleton);
  WriteMeshes(json, actor.meshes);
  WriteMaterials(json, actor.materials);
  WritePictures(json, actor.pictures);
  json.CloseObject();
}

}  // namespace

std::string InspectionsAsJson(const std::vector<Inspection>& inspections) {
  constexpr int kJsonVersion = 2;
  JsonWriter json;
  json.OpenObject();
  ts3d::WriteJsonHead(json, "inspect", kJsonVersion);
  json.OpenArray("packages");
  for (const Inspection& inspection : inspections) WriteInspection(json, inspection);
  json.CloseArray();
  json.CloseObject();
  return ts3d::JsonText(json.Text());
}

}  // namespace cli
