// SPDX-License-Identifier: MIT
#include "rig_check/report_json.h"

#include "core/json_output.h"

namespace ts3d {

void WriteReport(JsonWriter& json, const RigReport& report) {
  json.Member("result", report.Worst() == Severity::Note ? "sound" : NameOf(report.Worst()));
  json.Member("format", report.format);
  json.Member("fbx_version", report.format == "FBX" ? report.version : std::string());
  json.Member("object_id", report.objectId);
  json.Objects("bones", report.bones, [&](const OutputBone& bone) {
    json.Member("name", bone.name);
    json.Member("parent", bone.parent);
    json.Member("weighted", bone.weighted);
  });
  json.Objects("meshes", report.meshes, [&](const OutputMesh& mesh) {
    json.Member("name", mesh.name);
    json.Member("node", mesh.node);
    json.Member("vertices", mesh.vertices);
    json.Member("triangles", mesh.triangles);
    json.Member("material", mesh.material);
    json.Member("texture", mesh.texture);
  });
  json.Objects("textures", report.textures, [&](const UsedTexture& texture) {
    json.Member("name", texture.tgaName);
    json.Member("file", texture.fileName);
    json.Member("relative_file", texture.relativeFileName);
    json.Member("embedded", texture.isEmbedded);
    json.Member("materials", texture.materials);
  });
  json.Member("members", report.members);
  json.Key("messages");
  WriteFindings(json, report.findings);
}

}  // namespace ts3d
