// SPDX-License-Identifier: MIT
#include <algorithm>
#include <nlohmann/json.hpp>

#include "actor/picture_header.h"
#include "inspect/actor_measure.h"
#include "output/inspection.h"
#include "output/json_parts.h"

namespace cli {
namespace {

using Json = nlohmann::ordered_json;

Json Members(const actor::PackageContents& contents) {
  Json list = Json::array();
  for (const actor::Member& member : contents.members) {
    list.push_back({{"name", member.name},
                    {"size", member.size},
                    {"packed_size", member.packedSize},
                    {"date", member.date.empty() ? Json() : Json(member.date)},
                    {"sound", member.sound},
                    {"superseded", member.superseded}});
  }
  return list;
}

Json DocumentSummary(const actor::Document& document) {
  if (document.memberName.empty()) return {};
  Json renames = Json::array(), meshes = Json::array(), materials = Json::array();
  for (const auto& [oldName, newName] : document.boneRenames) {
    renames.push_back({{"old", oldName}, {"new", newName}});
  }
  for (const actor::DocumentMesh& mesh : document.meshes) {
    meshes.push_back({{"name", mesh.name}, {"file", mesh.file}, {"both_sides", mesh.bothSides}});
  }
  for (const actor::DocumentMaterial& material : document.materials) {
    materials.push_back({{"name", material.name}, {"file", material.file}, {"thread", material.threadId}});
  }
  return {{"file", document.memberName},
          {"object_id", document.objectId},
          {"scale", document.scale},
          {"rotation", {{"x", document.rotationX}, {"y", document.rotationY}}},
          {"skeleton_file", document.skeletonFile},
          {"bone_renames", renames},
          {"meshes", meshes},
          {"materials", materials}};
}

Json Bones(const actor::Skeleton& skeleton) {
  Json list = Json::array();
  for (size_t i = 0; i < skeleton.bones.size(); ++i) {
    list.push_back({{"id", i}, {"name", skeleton.bones[i].name}, {"parent", skeleton.bones[i].parent}});
  }
  return list;
}

Json Meshes(const std::vector<actor::Mesh>& meshes) {
  Json list = Json::array();
  for (const actor::Mesh& mesh : meshes) {
    const actor::Box box = BoundsOf(mesh);
    list.push_back({{"name", mesh.name},
                    {"thread", mesh.threadId},
                    {"vertices", mesh.vertices.size()},
                    {"faces", mesh.faces.size()},
                    {"influences", mesh.influences.size()},
                    {"bounds", box.IsEmpty() ? Json() : Json({{"low", box.low}, {"high", box.high}})}});
  }
  return list;
}

Json Materials(const std::vector<actor::Material>& materials) {
  Json list = Json::array();
  for (const actor::Material& material : materials) {
    list.push_back({{"name", material.name},
                    {"ambient", material.ambient},
                    {"diffuse", material.diffuse},
                    {"specular", material.specular},
                    {"shininess", material.shininess},
                    {"picture", material.hasMap ? Json(material.map) : Json()}});
  }
  return list;
}

Json Pictures(const std::vector<actor::Picture>& pictures) {
  Json list = Json::array();
  for (const actor::Picture& picture : pictures) {
    actor::PictureHeader header;
    const bool known = !ReadPictureHeader(picture.bytes, header);
    list.push_back({{"name", picture.name},
                    {"width", known ? Json(header.width) : Json()},
                    {"height", known ? Json(header.height) : Json()},
                    {"bits", known ? Json(header.bits) : Json()}});
  }
  return list;
}

/// What the finding is about: a member, a bone, or the package as a whole.
ts3d::Finding AsMessage(const actor::Finding& finding, const actor::PackageContents& contents) {
  const bool isMember =
      std::any_of(contents.members.begin(), contents.members.end(),
                  [&](const actor::Member& member) { return member.name == finding.subject; });
  ts3d::Finding message{finding.kind, ts3d::Severity::Note, ts3d::Subject::File,
                        {},           finding.text,         finding.advice};
  if (finding.severity == actor::Severity::Problem) message.severity = ts3d::Severity::Warning;
  if (finding.subject.empty()) return message;
  message.subject = isMember ? ts3d::Subject::Member : ts3d::Subject::Bone;
  message.names = {finding.subject};
  return message;
}

Json MessagesAsJson(const Inspection& inspection) {
  std::vector<ts3d::Finding> messages;
  if (!inspection.error.empty()) {
    messages.push_back(
        {"unreadable-package", ts3d::Severity::Fatal, ts3d::Subject::File, {}, inspection.error, {}});
  }
  for (const actor::Finding& finding : inspection.findings)
    messages.push_back(AsMessage(finding, inspection.contents));
  return FindingsAsJson(messages);
}

Json AsJson(const Inspection& inspection) {
  const actor::Actor& actor = inspection.actor;
  return {{"path", inspection.path},
          {"readable", inspection.error.empty()},
          {"messages", MessagesAsJson(inspection)},
          {"members", Members(inspection.contents)},
          {"document", DocumentSummary(actor.document)},
          {"bones", Bones(actor.skeleton)},
          {"meshes", Meshes(actor.meshes)},
          {"materials", Materials(actor.materials)},
          {"pictures", Pictures(actor.pictures)}};
}

}  // namespace

std::string InspectionsAsJson(const std::vector<Inspection>& inspections) {
  constexpr int kJsonVersion = 2;
  Json json = JsonHead("inspect", kJsonVersion);
  Json& packages = json["packages"] = Json::array();
  for (const Inspection& inspection : inspections) packages.push_back(AsJson(inspection));
  return JsonText(json);
}

}  // namespace cli
